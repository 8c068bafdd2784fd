// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/commandline.h"

#include "app/cmdline.h"

namespace fixture {

namespace {

// Calls a function with a program name and arguments, as main has them.
template <typename Function>
auto Call(Function function, const std::vector<std::string>& arguments, int first)
{
    std::vector<std::string> texts = {"plotvw"};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    argv.reserve(texts.size() + 1);
    for (std::string& text : texts)
        argv.push_back(text.data());
    argv.push_back(nullptr);
    return function(static_cast<int>(texts.size()), argv.data(), first);
}

} // namespace

int ParseArguments(const std::vector<std::string>& arguments, int first)
{
    return Call(ProcessCmdline, arguments, first);
}

bool CheckArguments(const std::vector<std::string>& arguments)
{
    return Call(CmdlineFits, arguments, 1);
}

} // namespace fixture
