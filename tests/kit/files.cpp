// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/kit/files.h"

#include <QFile>
#include <QFileInfo>

#include <fstream>

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

QByteArray ReadFile(const std::string& path)
{
    return ReadFile(Text(path));
}

bool WriteFile(const QString& path, QByteArrayView bytes)
{
    return WriteFile(QFile::encodeName(path).toStdString(), bytes);
}

bool WriteFile(const std::string& path, QByteArrayView bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), bytes.size());
    file.close();
    return file.good();
}

bool Exists(const std::string& path)
{
    return QFileInfo::exists(Text(path));
}
