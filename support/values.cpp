// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "support/values.h"

#include "support/numbers.h"

#include <cstdlib>
#include <cstring>

#include <locale.h>

namespace {

// Qt sets the process's locale from the environment; with a decimal comma the plain conversions
// would read "0.5" as 0.
locale_t CLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

char* SkipBlanks(char* s)
{
    return s + std::strspn(s, " \t\n\v\f\r");
}

double TextToDouble(const char* s)
{
    // Skips blanks, as strtol_l does.
    return strtod_l(s, nullptr, CLocale());
}

// The text after the first comma, or null if there is none.
char* AfterComma(char* s)
{
    char* comma = std::strchr(s, ',');
    return comma == nullptr ? nullptr : comma + 1;
}

} // namespace

int TextToInt(const char* s)
{
    constexpr int kDecimal = 10; // so that "010" is ten and "0x10" is 0
    return SaturateToInt(strtol_l(s, nullptr, kDecimal, CLocale()));
}

void GetDouble(char* s, double* out)
{
    *out = TextToDouble(s);
}

void GetDoublePair(char* s, double* a, double* b)
{
    *a = TextToDouble(s);
    if (const char* second = AfterComma(s))
        *b = TextToDouble(second);
}

int GetIntPair(char* s, int* a, int* b)
{
    *a = TextToInt(s);
    if (const char* second = AfterComma(s))
        *b = TextToInt(second);
    return *b;
}

void GetIntYesNo(char* s, int* out)
{
    const char first = *SkipBlanks(s);
    *out = first == 'Y' || first == 'y' ? 1 : 0;
}
