// Command-line parsing for the subcommands: options are "--name value" or
// "--name=value"; "--" ends them; anything unexpected is a UsageError.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace zt {

struct OptionSpec {
    const char* name;  // without the leading dashes
    bool takesValue;
};

struct Args {
    std::string command;
    std::vector<std::string> positional;
    std::map<std::string, std::string> options;
    bool help = false;

    bool Has(const std::string& name) const { return options.count(name) != 0; }
    const std::string& Get(const std::string& name) const;  // UsageError if absent
    std::string Get(const std::string& name, const std::string& fallback) const;
};

// Parses argv[first..argc). `command` names the subcommand in messages.
Args ParseArgs(const std::string& command, int argc, char** argv, int first, const std::vector<OptionSpec>& options);

// Requires exactly the named positional arguments (such as {"IN", "OUT"}).
void RequirePositional(const Args& a, const std::vector<std::string>& names);

// Value parsers; each throws UsageError naming the option and what it wants.
long long ParseInt(const std::string& option, const std::string& text);
// A whole number from lo to hi; else "--OPTION wants LO..HI[what], not 'TEXT'".
long long ParseIntIn(const std::string& option, const std::string& text, long long lo, long long hi,
                     const std::string& what = "");
void ParseSize(const std::string& option, const std::string& text, int* w, int* h);
void ParseRect(const std::string& option, const std::string& text, int* x, int* y, int* w, int* h);
// One of `choices`, matched without regard to case; returns its index.
int ParseChoice(const std::string& option, const std::string& text, const std::vector<std::string>& choices);

}  // namespace zt
