// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/directories.h"

#include "app/state/globals.h"
#include "support/text.h"
#include "tests/kit/files.h"
#include "tests/kit/globals.h"

#include <QDir>
#include <QTest>

namespace fixture {

Directories::Directories()
{
    ResetGlobals();
    QVERIFY(root.isValid());
    Make("home", gszHomedir);
    Make("exe", gszExePath);
    Make("work", gszCurdir);
    Make("tmp", gszTmppath);
    qputenv("HOME", gszHomedir);
    qputenv("TMP", gszTmppath);
}

std::string Directories::Path(const std::string& name) const
{
    return root.path().toStdString() + '/' + name;
}

std::string Directories::Write(const std::string& name, const std::string& bytes) const
{
    std::string path = Path(name);
    if (!WriteFile(path, bytes))
        qFatal("cannot write %s", path.c_str());
    return path;
}

template <size_t size> void Directories::Make(const char* name, char (&global)[size])
{
    const std::string path = Path(name);
    QVERIFY(QDir().mkpath(QString::fromStdString(path)));
    QVERIFY(CopyText(global, path.c_str()));
}

} // namespace fixture
