// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What tests of saving and exporting share: a graph, and the dialogs that ask for a name.
#pragma once

#include "tests/kit/appfixture.h"

#include <QPoint>
#include <QStringList>

#include <string>
#include <vector>

namespace fixture {

/// A graph of black lines in all directions: a picture without colors survives JPEG best.
std::string ExportGraph();

/// So many bytes without any order, always the same.
std::string Bytes(size_t count);

/// What a folder holds, sorted by name.
QStringList FilesIn(const std::string& folder);

/// Parses arguments behind a program name, as main does.
void Parse(const std::vector<std::string>& arguments);

/// The current directory of the process, for as long as the object lives.
class CurrentDirectory
{
public:
    explicit CurrentDirectory(const std::string& path);
    ~CurrentDirectory() { QDir::setCurrent(before); }
    Q_DISABLE_COPY_MOVE(CurrentDirectory)

private:
    QString before = QDir::currentPath();
};

/// A dialog that asks for a name.
struct Asking {
    const char* item;
    const char* objectName;
    const char* caption;
    const char* filter;
    const char* extension;
};

constexpr Asking kSave = {"&Save File As", "Save Graphic File", "Save as",
                          "KORVEL Graphics (*.plf)", ".plf"};
constexpr Asking kJpeg = {"&JPEG Compressed Bitmap", "Export Graphic File", "Export JPEG image",
                          "JPEG image (*.jpg)", ".jpg"};
constexpr Asking kEps = {"&Encapsulated Postscript", "Export Graphic File", "Export EPS file",
                         "EPS file (*.eps)", ".eps"};

/// Puts a name into a dialog that asks for one, and confirms it, also over a file that is there.
void TypeNewName(QFileDialog& dialog, const std::string& name);

/// Where a drag begins and ends that zooms into kZoomArea, in a view of the usual size.
constexpr QPoint kZoomFrom(160, 120);
constexpr QPoint kZoomTo(480, 340);
constexpr Rect kZoomArea = {1024, 780, 3072, 2210, 2048, 1430}; // drawing units

/// A base of tests that save and export.
class ExportTest : public WindowTest
{
protected:
    /// The system's printers are none of these tests.
    static void HidePrinters() { qputenv("CUPS_SERVER", "/nonexistent"); }

    std::string GraphFile() { return directories->Write("a.plf", ExportGraph()); }
    /// Shows the test graph in a view of a size.
    void Open(Window& window, QSize size = kUsualView) { OpenView(window, GraphFile(), size); }
    static void Choose(const Window& window, const char* item);
    void ChooseAndType(const Window& window, const Asking& asking, const std::string& name);
    void SaveAs(const Window& window, const std::string& name)
    {
        ChooseAndType(window, kSave, name);
    }

    /// Drags from kZoomFrom to kZoomTo.
    static void Zoom(const Window& window);

    /// Gives the file dialog a name below the test's directory. The caller calls
    /// setfsuid(geteuid()) afterwards: in the locked folder nobody shall write, and root could.
    void ExpectUnwritableName(const std::string& name);
    /// Makes what cannot be written, under names with an extension.
    void MakeUnwritable(const char* extension);
    /// Others may come as far as to this folder, but not write into it.
    void LockFolder();
};

} // namespace fixture

Q_DECLARE_METATYPE(fixture::Asking)
