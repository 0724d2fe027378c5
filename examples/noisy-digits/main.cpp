#include <cstdio>
#include <string>
#include "evaluation.h"
#include "plain.h"
#include "progress.h"
#include "tables.h"
using namespace digits;
int main(int argc, char** argv) {
    Experiment e;
    std::string data = argv[1];
    e.train = readCorpus(data + "/train", "reading");
    e.test = readCorpus(data + "/test", "reading");
    e.threads = 2;
    std::vector<Result> results;
    for (const Contender& c : {Contender{"plain", plainFrontEnd()}}) {
        Progress p(c.name, evaluationSteps(e));
        auto r = evaluate(e, c, [&] { p.step(); });
        results.insert(results.end(), r.begin(), r.end());
    }
    printTables(stdout, e, results);
}
