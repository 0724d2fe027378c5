// Printing.
#include "report.h"

#include <algorithm>

namespace fuzz {
namespace {

constexpr std::size_t mostElements = 40;

void showElements(std::FILE* out, const Element& element, const std::byte* at, std::size_t bytes) {
    const std::size_t count = bytes / element.bytes();
    std::fputs("{", out);
    for (std::size_t i = 0; i < std::min(count, mostElements); ++i) {
        std::fprintf(out, "%s%s", i > 0 ? ", " : "", textOf(element, at + i * element.bytes()).c_str());
    }
    std::fputs(count > mostElements ? ", ...}" : "}", out);
}

void showArray(std::FILE* out, const Case& made, const Argument& argument, const Value& value) {
    static const char* const directions[] = {"in", "out", "inout", "work"};
    std::fprintf(out, "%s %s", directions[static_cast<int>(argument.direction)], argument.type.c_str());
    const std::size_t size = argument.element.bytes();
    for (std::size_t b = 0; b < value.blocks; ++b) {
        const Block& block = made.blocks[value.firstBlock + b];
        if (argument.shape == Shape::rows) {
            std::fprintf(out, "[%zu:%zu:%zu]", value.height, value.stepBytes / size, value.widthBytes / size);
        } else {
            std::fprintf(out, "%s[%zu]", argument.shape == Shape::list ? "\n      " : "", block.bytes / size);
        }
        if (static_cast<int>(b) == value.nullRow) {
            std::fputs(" null", out);
        } else if (value.hasImage && value.stepBytes > value.widthBytes) {
            for (std::size_t row = 0; row < value.height; ++row) {
                std::fputs("\n      ", out);
                showElements(out, argument.element, made.data.data() + block.image + row * value.stepBytes,
                             value.widthBytes);
            }
        } else if (value.hasImage) {
            std::fputs(" ", out);
            showElements(out, argument.element, made.data.data() + block.image, block.bytes);
        }
    }
    std::fprintf(out, "  (%d and %d bytes from the unmapped page)", value.distance[0], value.distance[1]);
}

void showValue(std::FILE* out, const Table& table, const Case& made, const Function& function, const Call& call,
               std::size_t i) {
    const Argument& argument = function.arguments[i];
    const Value& value = call.values[i];
    std::fprintf(out, "    %s%s = ", argument.name.c_str(), value.broken ? " (broken)" : "");
    if (value.null) {
        std::fputs("null", out);
    } else if (value.nowhere) {
        std::fputs("unmapped", out);
    } else if (argument.role == Role::number) {
        std::fputs(textOf(argument.element, value.number.data()).c_str(), out);
    } else if (argument.role == Role::array) {
        showArray(out, made, argument, value);
        if (value.same >= 0) std::fprintf(out, ", in place of %s", function.arguments[value.same].name.c_str());
    } else if (argument.makes()) {
        std::fprintf(out, "new %s", table.formName(argument.forms.front()).c_str());
        if (call.makes >= 0) std::fprintf(out, " #%d", call.makes);
        if (argument.verb == Verb::init) std::fprintf(out, " in %zu bytes", value.bytes);
    } else if (value.zeroed) {
        std::fputs("zeros", out);
    } else {
        for (std::size_t n = 0; n < value.contexts; ++n) {
            const int context = made.contextLists[value.firstContext + n];
            std::fprintf(out, "%s#%d (%s)", n > 0 ? ", " : "", context,
                         table.formName(made.contexts[context].form).c_str());
        }
    }
    std::fputs("\n", out);
}

}  // namespace

std::string replayOf(const Table& table, int function, const std::vector<std::uint8_t>& bytes) {
    return table.at(function).name + ":" + hexOf(bytes);
}

std::string lineOf(const Table& table, const Finding& finding) {
    const Function& function = table.at(finding.function);
    std::string line = nameOf(finding.wrong) + std::string(" ") + function.name;
    if (finding.argument >= 0) line += "." + function.arguments[finding.argument].name;
    if (!finding.detail.empty()) line += ": " + finding.detail;
    return line;
}

void show(std::FILE* out, const Table& table, const Case& made) {
    static const char* const modes[] = {"to nearest", "down", "up", "to zero"};
    if (made.rounding != 0) std::fprintf(out, "  in the rounding mode %s\n", modes[made.rounding]);
    for (std::size_t c = 0; c < made.calls.size(); ++c) {
        const Call& call = made.calls[c];
        const Function& function = table.at(call.function);
        std::fprintf(out, "  %s%s%s\n", function.name.c_str(), c == made.target ? ", which the case is about" : "",
                     call.broken ? ", with broken arguments" : "");
        for (std::size_t i = 0; i < call.values.size(); ++i) showValue(out, table, made, function, call, i);
    }
}

void show(std::FILE* out, const Table& table, const Finding& finding) {
    std::fprintf(out, "  %s\n  in %s\n", lineOf(table, finding).c_str(), finding.where.c_str());
    if (finding.actual.empty() || finding.argument < 0) return;
    const Element& element = table.at(finding.function).arguments[finding.argument].element;
    const std::size_t size = element.bytes();
    const std::size_t element0 = finding.firstByte / size;
    const std::size_t from = element0 < mostElements / 2 ? 0 : (element0 - mostElements / 2) * size;
    std::fprintf(out, "  expected from element %zu on: ", from / size);
    showElements(out, element, finding.expected.data() + from, finding.expected.size() - from);
    std::fprintf(out, "\n  got:                        ");
    showElements(out, element, finding.actual.data() + from, finding.actual.size() - from);
    std::fprintf(out, "\n  first difference: element %zu\n", element0);
}

}  // namespace fuzz
