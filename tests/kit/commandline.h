// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Command lines in a test.
#pragma once

#include "tests/kit/appfixture.h"
#include "tests/kit/globalvalues.h"

#include <string>
#include <vector>

namespace fixture {

/// Parses arguments behind a program name, as main does.
/// @param first  the argument to begin with
int ParseArguments(const std::vector<std::string>& arguments, int first = 1);

/// Whether the arguments fit, as main asks.
bool CheckArguments(const std::vector<std::string>& arguments);

/// A base of tests that ask what a command line changes.
class CmdlineTest : public WindowTest
{
protected:
    void Begin()
    {
        WindowTest::Begin();
        before = AllGlobals();
    }

    Globals before;
};

} // namespace fixture
