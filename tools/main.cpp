// zilcc: the command-line face of libzilccmx.
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "commands.hpp"
#include "common.hpp"
#include "registry.hpp"

namespace {

const char kUsage[] =
    "usage: zilcc COMMAND [ARGS]\n"
    "\n"
    "Bit-exact colour conversions of libzilccmx from the command line.\n"
    "\n"
    "commands:\n";
const char kUsageEnd[] =
    "\n"
    "Run 'zilcc COMMAND --help' for a command's options. Exit status: 0 done,\n"
    "1 bad data or a library error, 2 bad command line.\n";

}  // namespace

namespace zt {
ZT_REGISTER(CommandDef{"demo", "render a synthetic scene, run the library on it and write the results as PNG files with an index.html contact sheet", RunDemo, 10})
ZT_REGISTER(CommandDef{"demosaic", "reconstruct RGB from a colour-filter-array (Bayer) image", RunDemosaic, 20})
ZT_REGISTER(CommandDef{"convert", "RGB to raw YUV (I420, NV12, YUY2, UYVY, 4:2:2, 4:4:4) and back, and other colour spaces", RunConvert, 30})
ZT_REGISTER(CommandDef{"dither", "reduce the number of levels, with dithering; one-bit output", RunDither, 40})
ZT_REGISTER(CommandDef{"version", "print the library's version record", RunVersion, 900})
ZT_REGISTER(CommandDef{"list", "list the library's exported functions", RunList, 910})
}  // namespace zt

namespace {

// The help text's command list, wrapped to 78 columns.
void PrintUsage() {
    std::fputs(kUsage, stdout);
    for (const zt::CommandDef& c : zt::Commands()) {
        std::string line = "  " + std::string(c.name);
        line.resize(13, ' ');
        std::string words = c.summary, out = line;
        size_t col = out.size();
        size_t pos = 0;
        while (pos < words.size()) {
            size_t end = words.find(' ', pos);
            if (end == std::string::npos) end = words.size();
            const std::string w = words.substr(pos, end - pos);
            if (col + w.size() + 1 > 78 && col > 13) {
                out += "\n" + std::string(13, ' ');
                col = 13;
            } else if (col > 13) {
                out += ' ';
                ++col;
            }
            out += w;
            col += w.size();
            pos = end + 1;
        }
        std::printf("%s\n", out.c_str());
    }
    std::fputs(kUsageEnd, stdout);
}

std::string CommandNames() {
    std::string names;
    const auto cmds = zt::Commands();
    for (size_t i = 0; i < cmds.size(); ++i)
        names += (i == 0 ? "" : i + 1 == cmds.size() ? " or " : ", ") + std::string(cmds[i].name);
    return names;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "zilcc: missing command: %s (see zilcc --help)\n", CommandNames().c_str());
        return 2;
    }
    const std::string cmd = argv[1];
    if (cmd == "--help" || cmd == "-h" || cmd == "help") {
        PrintUsage();
        return 0;
    }
    const std::vector<zt::CommandDef> commands = zt::Commands();
    const zt::CommandDef* found = nullptr;
    for (const zt::CommandDef& c : commands)
        if (cmd == c.name || (cmd == "--version" && std::string(c.name) == "version")) found = &c;
    const std::string prefix = "zilcc" + (found ? " " + std::string(found->name) : std::string()) + ": ";
    try {
        if (!found) throw zt::UsageError("unknown command '" + cmd + "' (see zilcc --help)");
        return found->run(argc, argv, 2);
    } catch (const zt::UsageError& e) {
        std::fprintf(stderr, "%s%s\n", prefix.c_str(), e.what());
        return 2;
    } catch (const zt::DataError& e) {
        std::fprintf(stderr, "%s%s\n", prefix.c_str(), e.what());
        return 1;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "%sout of memory\n", prefix.c_str());
        return 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s%s\n", prefix.c_str(), e.what());
        return 1;
    }
}
