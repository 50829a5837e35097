// zilcc: the command-line face of libzilccmx.
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "commands.hpp"
#include "common.hpp"

namespace {

const char kUsage[] =
    "usage: zilcc COMMAND [ARGS]\n"
    "\n"
    "Bit-exact colour conversions of libzilccmx from the command line.\n"
    "\n"
    "commands:\n"
    "  demo       render a synthetic scene, run the library on it and write the\n"
    "             results as PNG files with an index.html contact sheet\n"
    "  demosaic   reconstruct RGB from a colour-filter-array (Bayer) image\n"
    "  convert    RGB to raw YUV (I420, NV12, YUY2, UYVY, 4:2:2, 4:4:4) and back\n"
    "  dither     reduce the number of levels, with dithering; one-bit output\n"
    "  version    print the library's version record\n"
    "  list       list the library's exported functions\n"
    "\n"
    "Run 'zilcc COMMAND --help' for a command's options. Exit status: 0 done,\n"
    "1 bad data or a library error, 2 bad command line.\n";

struct Command {
    const char* name;
    int (*run)(int, char**, int);
};

const Command kCommands[] = {
    {"demo", zt::RunDemo},       {"demosaic", zt::RunDemosaic}, {"convert", zt::RunConvert},
    {"dither", zt::RunDither},   {"version", zt::RunVersion},   {"list", zt::RunList},
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("zilcc: missing command: demo, demosaic, convert, dither, version or list (see zilcc --help)\n",
                   stderr);
        return 2;
    }
    const std::string cmd = argv[1];
    if (cmd == "--help" || cmd == "-h" || cmd == "help") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const Command* found = nullptr;
    for (const Command& c : kCommands)
        if (cmd == c.name) found = &c;
    if (cmd == "--version") found = &kCommands[4];
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
