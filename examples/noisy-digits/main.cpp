#include <cstdio>
#include <cstring>
#include <string>
#include "evaluation.h"
#include "plain.h"
#include "robust.h"
#include "progress.h"
#include "tables.h"
using namespace digits;
int main(int argc, char** argv) {
    Experiment e;
    std::string data = argv[1];
    e.train = readCorpus(data + "/train", "reading");
    if (argc > 2 && !strcmp(argv[2], "dev")) {
        // every fifth is the test
        Corpus tr;
        for (std::size_t i = 0; i < e.train.recordings.size(); ++i) (i % 5 == 4 ? e.test : tr).recordings.push_back(e.train.recordings[i]);
        e.train = tr;
        e.trainings = {Training::kClean};
    } else e.test = readCorpus(data + "/test", "reading");
    e.threads = 2;
    std::vector<Result> results;
    std::vector<Contender> cs{Contender{"plain", plainFrontEnd()}};
    auto robust = [&](const char* name, RobustSteps s) {
        auto r = std::make_shared<RobustFrontEnd>(s);
        NoiseMaker m({});
        std::vector<Mixed> mx; for (auto& x : e.train.recordings) mx.push_back(mixed(x.samples, Noise::kWhite, {}, m, Random(5)));
        r->learnReference(mx);
        cs.push_back({name, [r](const Mixed& m) { return r->analyse(m); }});
    };
    robust("two-stage", {});
    if (argc > 3) {
        robust("-first", {.reduction = {.first = false}});
        robust("-second", {.reduction = {.second = false}});
        robust("-both", {.reduction = {.first = false, .second = false}});
        robust("-gradual", {.reduction = {.gradual = false}});
        robust("-waveform", {.waveform = false});
        robust("-equalised", {.equalised = false});
        robust("-dropped", {.dropped = false});
    }
    for (const Contender& c : cs) {
        Progress p(c.name, evaluationSteps(e));
        auto r = evaluate(e, c, [&] { p.step(); });
        for (auto& x : r) printf("%s %s: %.2f\n", x.name.c_str(), nameOf(x.training), meanAccuracy(e, x)), fflush(stdout);
        results.insert(results.end(), r.begin(), r.end());
    }
    printTables(stdout, e, results);
}
