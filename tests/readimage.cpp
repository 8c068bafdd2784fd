// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// A program that has a window system, or none, or no application object at all, and reads an image:
//   readimage none|core|gui FILE PICTURE
// The picture is a PNG file. QT_PLUGIN_PATH says where the plug-ins are.
#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>

#include <cstdio>
#include <memory>
#include <string_view>

namespace {

std::unique_ptr<QCoreApplication> Start(std::string_view kind, int* argc, char** argv)
{
    if (kind == "core")
        return std::make_unique<QCoreApplication>(*argc, argv);
    if (kind == "gui")
        return std::make_unique<QGuiApplication>(*argc, argv);
    return nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    const auto application = Start(argv[1], &argc, argv);
    QImageReader reader(QString::fromLocal8Bit(argv[2]));
    const QImage image = reader.read();
    if (image.isNull())
        fprintf(stderr, "%s\n", qPrintable(reader.errorString()));
    return image.save(QString::fromLocal8Bit(argv[3]), "png") ? 0 : 1;
}
