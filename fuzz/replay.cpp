// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Runs a fuzz target without the fuzzer, on files and on all files of folders:
//   fuzz_TARGET PATH...
#include "fuzz/target.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <vector>

namespace {

QStringList FilesOf(const QString& path)
{
    if (!QFileInfo(path).isDir())
        return {path};
    QStringList files;
    QDirIterator found(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (found.hasNext())
        files += found.next();
    files.sort();
    return files;
}

// The name is printed first, so the last one is that of an input that ends the process.
bool Run(const QString& path)
{
    std::fprintf(stderr, "%s\n", qPrintable(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fputs("cannot be read\n", stderr);
        return false;
    }
    const QByteArray bytes = file.readAll();
    // In its own block of memory, so that reading beyond the end is detected.
    const std::vector<uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QStringList files;
    for (int i = 1; i < argc; ++i)
        files += FilesOf(QFileInfo(QString::fromLocal8Bit(argv[i])).absoluteFilePath());
    LLVMFuzzerInitialize(&argc, &argv);
    int runs = 0;
    for (const QString& file : files)
        runs += Run(file) ? 1 : 0;
    std::printf("%d inputs\n", runs);
    return runs > 0 && runs == files.size() ? 0 : 1;
}
