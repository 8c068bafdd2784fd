// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// Writes initial graphs for the fuzz targets: the cases of the decoder scripts, and pieces of the
// samples, because whole samples are too long.
//   fuzz_seeds SAMPLES SCRIPTS OUTPUT
#include "tests/kit/script.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace {

// Bytes of a sample that contain its color map and the start of its first commands.
constexpr qsizetype kHead = 300;
constexpr qsizetype kPiece = 1200;
// Number of pieces of a sample.
constexpr int kPieces = 6;

void Write(const QDir& output, const QString& name, const QByteArray& bytes)
{
    QFile file(output.filePath(name + QStringLiteral(".plf")));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

void WriteCases(const QDir& scripts, const QDir& output)
{
    for (const QString& script : scripts.entryList({QStringLiteral("*.txt")})) {
        int number = 0;
        for (const ScriptCase& row : ReadScript(scripts.filePath(script)))
            Write(output, script + QString::number(number++), row.file);
    }
}

void WritePieces(const QString& path, const QDir& output)
{
    QFile sample(path);
    if (!sample.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    const QByteArray bytes = sample.readAll();
    const QString name = QFileInfo(path).completeBaseName();
    for (int i = 0; i < kPieces; ++i) {
        const qsizetype at =
            kHead + (std::max(bytes.size() - kPiece, kHead) - kHead) * i / (kPieces - 1);
        Write(output, name + QString::number(i), bytes.left(kHead) + bytes.mid(at, kPiece));
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4)
        qFatal("usage: fuzz_seeds SAMPLES SCRIPTS OUTPUT");
    const QDir samples(QString::fromLocal8Bit(argv[1]));
    const QDir output(QString::fromLocal8Bit(argv[3]));
    if (!QDir().mkpath(output.path()))
        qFatal("cannot make %s", argv[3]);
    WriteCases(QDir(QString::fromLocal8Bit(argv[2])), output);
    for (const QString& sample : samples.entryList({QStringLiteral("*.plf")}))
        WritePieces(samples.filePath(sample), output);
    return 0;
}
