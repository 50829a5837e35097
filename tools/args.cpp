#include "args.hpp"

#include <cctype>
#include <cerrno>
#include <cstdlib>

#include "common.hpp"

namespace zt {

const std::string& Args::Get(const std::string& name) const {
    auto it = options.find(name);
    if (it == options.end()) throw UsageError("missing option --" + name + " (see zilcc " + command + " --help)");
    return it->second;
}

std::string Args::Get(const std::string& name, const std::string& fallback) const {
    auto it = options.find(name);
    return it == options.end() ? fallback : it->second;
}

Args ParseArgs(const std::string& command, int argc, char** argv, int first, const std::vector<OptionSpec>& options) {
    Args a;
    a.command = command;
    bool optionsEnded = false;
    for (int i = first; i < argc; ++i) {
        const std::string arg = argv[i];
        if (optionsEnded || arg.size() < 2 || arg[0] != '-') {
            a.positional.push_back(arg);
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        if (arg == "-h" || arg == "--help") {
            a.help = true;
            continue;
        }
        std::string name = arg.substr(arg[1] == '-' ? 2 : 1);
        std::string value;
        bool hasValue = false;
        const size_t eq = name.find('=');
        if (eq != std::string::npos) {
            value = name.substr(eq + 1);
            name = name.substr(0, eq);
            hasValue = true;
        }
        const OptionSpec* opt = nullptr;
        for (const auto& s : options)
            if (name == s.name) opt = &s;
        if (!opt || arg[1] != '-')
            throw UsageError("unknown option '" + arg + "' for zilcc " + command + " (see zilcc " + command + " --help)");
        if (opt->takesValue) {
            if (!hasValue) {
                if (i + 1 >= argc) throw UsageError("option --" + name + " needs a value (see zilcc " + command + " --help)");
                value = argv[++i];
            }
        } else if (hasValue) {
            throw UsageError("option --" + name + " takes no value");
        }
        if (a.options.count(name)) throw UsageError("option --" + name + " given twice");
        a.options[name] = value;
    }
    return a;
}

void RequirePositional(const Args& a, const std::vector<std::string>& names) {
    if (a.positional.size() < names.size())
        throw UsageError("missing " + names[a.positional.size()] + " argument (see zilcc " + a.command + " --help)");
    if (a.positional.size() > names.size())
        throw UsageError("unexpected argument '" + a.positional[names.size()] + "' (see zilcc " + a.command + " --help)");
}

long long ParseInt(const std::string& option, const std::string& text) {
    errno = 0;
    char* end = nullptr;
    const long long v = std::strtoll(text.c_str(), &end, 10);
    if (text.empty() || *end != 0 || errno == ERANGE || v < -2147483648LL || v > 2147483647LL)
        throw UsageError("--" + option + " wants a whole number, not '" + text + "'");
    return v;
}

long long ParseIntIn(const std::string& option, const std::string& text, long long lo, long long hi,
                     const std::string& what) {
    long long v = lo - 1;
    try {
        v = ParseInt(option, text);
    } catch (const UsageError&) {
    }
    if (v < lo || v > hi)
        throw UsageError("--" + option + " wants a whole number from " + std::to_string(lo) + " to " +
                         std::to_string(hi) + what + ", not '" + text + "'");
    return v;
}

void ParseSize(const std::string& option, const std::string& text, int* w, int* h) {
    const size_t x = text.find_first_of("xX");
    bool ok = x != std::string::npos && x > 0 && x + 1 < text.size();
    for (size_t i = 0; ok && i < text.size(); ++i)
        if (i != x && !std::isdigit(static_cast<unsigned char>(text[i]))) ok = false;
    long long W = 0, H = 0;
    if (ok) {
        W = std::strtoll(text.substr(0, x).c_str(), nullptr, 10);
        H = std::strtoll(text.substr(x + 1).c_str(), nullptr, 10);
        ok = W >= 1 && H >= 1;
        if (ok && (x > 10 || text.size() - x - 1 > 10 || W > 1000000000 || H > 1000000000))
            throw UsageError("--" + option + " " + text + " is too large: width and height go up to 1000000000");
    }
    if (!ok) throw UsageError("--" + option + " wants WIDTHxHEIGHT such as 640x480, not '" + text + "'");
    *w = int(W);
    *h = int(H);
}

void ParseRect(const std::string& option, const std::string& text, int* x, int* y, int* w, int* h) {
    int* out[4] = {x, y, w, h};
    size_t pos = 0;
    for (int k = 0; k < 4; ++k) {
        const size_t comma = text.find(',', pos);
        const std::string part = text.substr(pos, comma == std::string::npos ? std::string::npos : comma - pos);
        bool ok = !part.empty() && part.size() <= 10 && (comma == std::string::npos) == (k == 3);
        for (char c : part)
            if (!std::isdigit(static_cast<unsigned char>(c))) ok = false;
        const long long v = ok ? std::strtoll(part.c_str(), nullptr, 10) : -1;
        if (!ok || v > 2147483647LL || (k >= 2 && v < 1))
            throw UsageError("--" + option + " wants x,y,w,h with x, y >= 0 and w, h >= 1, not '" + text + "'");
        *out[k] = int(v);
        pos = comma + 1;
    }
}

int ParseChoice(const std::string& option, const std::string& text, const std::vector<std::string>& choices) {
    std::string lower = text;
    for (char& c : lower) c = char(std::tolower(static_cast<unsigned char>(c)));
    for (size_t i = 0; i < choices.size(); ++i)
        if (lower == choices[i]) return int(i);
    std::string list;
    for (size_t i = 0; i < choices.size(); ++i) list += (i ? "|" : "") + choices[i];
    throw UsageError("--" + option + " wants " + list + ", not '" + text + "'");
}

}  // namespace zt
