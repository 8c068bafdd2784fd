// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Input: the words of a command line, one per line.
#include "app/cmdline.h"
#include "app/state/globals.h"
#include "fuzz/target.h"
#include "tests/kit/globals.h"

#include <QApplication>
#include <QByteArrayList>

#include <algorithm>
#include <vector>

namespace {

// A word ends at its zero byte, as in the arguments of a process.
QByteArrayList Words(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QByteArrayList words = input.split('\n');
    for (QByteArray& word : words)
        word.truncate(static_cast<qsizetype>(qstrlen(word.constData())));
    return words;
}

// Is the text the rest of a word after its first bytes?
bool IsWhole(const QByteArrayList& words, const char* text, qsizetype behind)
{
    return std::any_of(words.begin(), words.end(), [text, behind](const QByteArray& word) {
        return word.size() >= behind && word.sliced(behind) == text;
    });
}

void CheckTexts(const QByteArrayList& words)
{
    struct Text {
        const char* text;
        qsizetype behind;
    };
    for (const auto& [text, behind] : {Text{gszPlffileOrig, 0},
                                       {gszCvtFilenameBase, 4},
                                       {gszCurrentWorkingDir, 5},
                                       {gszKrvServerName, 9}})
        fuzz::Require(text[0] == 0 || IsWhole(words, text, behind), "nothing is stored cut");
}

void CheckWindowPlace()
{
    const auto sum = [](int64_t a, int64_t b) {
        return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
    };
    fuzz::Require(grWinPos.right == sum(grWinPos.left, grWinPos.width) &&
                      grWinPos.bottom == sum(grWinPos.top, grWinPos.height),
                  "the corners follow the size");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::PrepareQt();
    auto* application = new QApplication(*argc, *argv); // as long as the process
    application->installEventFilter(new fuzz::Refuser);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArrayList words = Words(data, size);
    std::vector<char*> argv;
    for (QByteArray& word : words)
        argv.push_back(word.data());
    ProcessCmdline(static_cast<int>(argv.size()), argv.data(), 0);
    CheckTexts(words);
    CheckWindowPlace();
    fuzz::Require((giCmdArg & ~(kJobPrint | kJobJpeg | kJobEps)) == 0, "every job is known");
    ResetGlobals();
    return 0;
}
