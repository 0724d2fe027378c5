#include "page.h"

#include <fstream>
#include <iterator>

#include "input_error.h"
#include "picture.h"
#include "svg.h"

namespace digits {
namespace {

constexpr const char* kStyle = R"(
:root { color-scheme: light dark; --page: #f6f7f9; --card: #ffffff; --ink: #1c2430; --soft: #5c6777; --rule: #dde2e9;
  --cell: #f1f3f6; --good: #1f7a4d; --bad: #c23b3b; --first: #1f5fd0; --second: #c2670a; --third: #0e8a74; --bar: #a9b4c2;
  --wave: #35507a; --odd: #d5e0f5; --even: #eef2f9; }
@media (prefers-color-scheme: dark) { :root { --page: #12161c; --card: #1a2029; --ink: #e6eaf0; --soft: #9aa6b6;
  --rule: #2d3643; --cell: #222a35; --good: #2f9e68; --bad: #d65a5a; --first: #6ea2ff; --second: #f2a14a; --third: #3fc7ac;
  --bar: #566273; --wave: #8fb0e6; --odd: #2b3f63; --even: #212b3b; } }
* { box-sizing: border-box; }
body { margin: 0; background: var(--page); color: var(--ink); font: 16px/1.55 system-ui, "Segoe UI", Roboto, "Helvetica Neue", "DejaVu Sans", sans-serif; }
main { max-width: 1080px; margin: 0 auto; padding: 40px 24px 64px; }
h1 { font-size: 2rem; line-height: 1.2; margin: 0 0 .3rem; letter-spacing: -.01em; }
h2 { font-size: 1.3rem; margin: 0 0 .2rem; }
h3 { font-size: 1rem; margin: 0 0 .6rem; }
p { margin: .2rem 0 1rem; max-width: 74ch; } .lead { color: var(--soft); font-size: 1.06rem; }
section { background: var(--card); border: 1px solid var(--rule); border-radius: 12px; padding: 24px 26px; margin-top: 22px; }
.tiles { display: grid; grid-template-columns: repeat(auto-fit, minmax(190px, 1fr)); gap: 14px; margin-top: 24px; }
.tile { background: var(--card); border: 1px solid var(--rule); border-radius: 12px; padding: 16px 18px; }
.tile b { display: block; font-size: 1.75rem; line-height: 1.25; font-weight: 650; font-variant-numeric: tabular-nums; }
.tile span { color: var(--soft); font-size: .9rem; }
.split { display: grid; grid-template-columns: minmax(0, 3fr) minmax(0, 2fr); gap: 34px; align-items: start; }
@media (max-width: 820px) { .split { grid-template-columns: 1fr; } }
table { border-collapse: collapse; width: 100%; font-size: .92rem; font-variant-numeric: tabular-nums; margin-bottom: 1.4rem; }
th { text-align: left; font-weight: 600; color: var(--soft); } th, td { padding: 5px 8px 5px 0; border-bottom: 1px solid var(--rule); }
.number { text-align: right; padding-right: 0; padding-left: 8px; }
.note { color: var(--soft); font-size: .87rem; }
.wrong { color: var(--bad); font-weight: 600; }
code { font: .86em ui-monospace, "DejaVu Sans Mono", monospace; }
ol.road { list-style: none; padding: 0; margin: 1rem 0 0; display: grid; grid-template-columns: repeat(auto-fill, minmax(232px, 1fr)); gap: 10px; counter-reset: step; }
ol.road li { border: 1px solid var(--rule); border-radius: 9px; padding: 10px 12px; background: var(--cell); counter-increment: step; }
ol.road li::before { content: counter(step); float: right; color: var(--soft); font-size: .85rem; }
ol.road b { display: block; } ol.road code { color: var(--soft); overflow-wrap: anywhere; }
ol.road span { display: block; font-size: .87rem; }
.head > div { flex: 1 1 420px; } .head { display: flex; flex-wrap: wrap; gap: 12px 24px; justify-content: space-between; align-items: center; }
audio { height: 38px; }
svg { display: block; width: 100%; height: auto; margin-top: 14px; overflow: visible; }
svg text { fill: var(--ink); font-size: 12px; } svg .title { font-size: 13.5px; font-weight: 600; }
svg .label { fill: var(--soft); } svg .strong { fill: var(--ink); font-weight: 600; }
svg .cells { image-rendering: pixelated; }
svg .frame { fill: none; stroke: var(--rule); } svg .void { fill: var(--cell); } svg .tick { stroke: var(--soft); stroke-width: 1; }
svg .grid { stroke: var(--rule); } svg .zero { stroke: var(--soft); stroke-dasharray: 4 3; }
svg .border { stroke: #8a94a3; stroke-width: 1; opacity: .55; }
svg .wave { fill: var(--wave); } svg .odd { fill: var(--odd); } svg .even { fill: var(--even); }
svg .curve { fill: none; stroke-width: 2; stroke-linejoin: round; } svg .key { stroke-width: 3; }
svg .curve.first, svg .key.first { stroke: var(--first); } svg .curve.second, svg .key.second { stroke: var(--second); }
svg .curve.third, svg .key.third { stroke: var(--third); }
svg .curve.thin, svg .key.thin { stroke: var(--soft); stroke-width: 1.2; } svg .key.second.dashed { stroke-dasharray: 3 3; }
svg .spectral-line { stroke: var(--second); stroke-width: 1.4; stroke-dasharray: 3 4; opacity: .85; } svg .gap { fill: #8e97a4; }
svg .track { fill: none; stroke-linejoin: round; } svg .track.under { stroke: #10151c; stroke-width: 3.6; opacity: .65; }
svg .track.odd-line { stroke: #ffffff; stroke-width: 1.7; } svg .track.even-line { stroke: #6fd3ff; stroke-width: 1.7; }
svg .dot { fill: var(--first); } svg .codeword { fill: #7fe0ff; stroke: #10151c; stroke-width: .9; rx: 2.5px; } svg .edge { fill: none; stroke: #c9d2de; stroke-width: 1.2; stroke-dasharray: 5 3; } svg .road { fill: none; stroke-linejoin: round; }
svg .road.under { stroke: #10151c; stroke-width: 4; opacity: .6; } svg .road.over { stroke: #ffffff; stroke-width: 2; }
svg .bar { fill: var(--bar); } svg .bar.first { fill: var(--first); } svg .bar.second { fill: var(--second); } svg .bar.third { fill: var(--third); }
svg text.digit { font-size: 12px; opacity: .75; } svg text.mean { font-size: 17px; font-weight: 700; opacity: 1; paint-order: stroke; stroke: var(--card); stroke-width: 4px; }
svg .d0 { fill: #d1495b; } svg .d1 { fill: #c2701c; } svg .d2 { fill: #9a8200; } svg .d3 { fill: #5b8f22; } svg .d4 { fill: #138f5c; }
svg .d5 { fill: #128c99; } svg .d6 { fill: #2f7fd0; } svg .d7 { fill: #6a6ae0; } svg .d8 { fill: #a352cc; } svg .d9 { fill: #c94797; }
svg .cell { rx: 5px; } svg .count { font-size: 14px; font-weight: 600; } svg .bright { fill: #ffffff; }
footer { color: var(--soft); font-size: .87rem; margin-top: 26px; }
@media print { body { background: none; } section, .tile { break-inside: avoid; } }
)";

}  // namespace

std::string tile(const std::string& value, const std::string& meaning) {
    return "<div class='tile'><b>" + value + "</b><span>" + meaning + "</span></div>\n";
}

std::string player(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return "<audio controls src='data:audio/wav;base64," + base64(bytes) + "'></audio>";
}

void writePage(const std::filesystem::path& path, const std::string& title, const std::string& lead,
               const std::string& body, const std::string& footer) {
    const std::string html =
        "<!DOCTYPE html>\n<html lang='en'><head><meta charset='utf-8'>\n"
        "<meta name='viewport' content='width=device-width, initial-scale=1'>\n<title>" +
        escaped(title) + "</title>\n<style>" + kStyle + "</style></head><body><main>\n<header><h1>" + escaped(title) +
        "</h1><p class='lead'>" + lead + "</p></header>\n" + body + "<footer>" + escaped(footer) +
        "</footer>\n</main></body></html>\n";
    std::ofstream file(path, std::ios::binary);
    if (!file.write(html.data(), static_cast<std::streamsize>(html.size())).flush()) {
        throw InputError(path, "cannot be written");
    }
}

}  // namespace digits
