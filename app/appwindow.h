// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// The viewer's only top-level window: menus, loading, and the window's own position.
#pragma once

#include "hostlink/connection.h"

#include <QMainWindow>

class DrawView;
class QMenu;
class StatusText;

/// What the dialogs that open and save graphs offer.
constexpr char kGraphFilter[] = "KORVEL Graphics (*.plf);;All Files (*)";

class AppWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Reads the configuration and settings files, builds the menus and places the window at
    /// grWinPos. It deletes itself when it is closed.
    AppWindow();
    ~AppWindow() override;

    /// Loads a graph and shows it; the view keeps its zoom. A failure is reported in a box and in
    /// the status bar and leaves no current file.
    /// @param name  absolute, with a directory, or relative to the directory at start-up
    void load(const QString& name);
    /// The same for a name in local 8-bit form, which need not be valid text.
    /// @param name  what the status bar calls it
    void loadFile(const QByteArray& path, const QString& name);

    /// The texts of the status bar, which all go through it.
    StatusText* statusText() const { return status; }

    /// Writes and deletes the files that closing the window would: the settings if autosave is on,
    /// the host's temporary file. For a program that ends without closing it.
    void LeaveFiles();

    DrawView* view = nullptr; // set by the view's own constructor

private:
    QMenu* fileMenu = nullptr;
    QMenu* exportMenu = nullptr;
    QMenu* viewMenu = nullptr;
    HostConnection host; // its socket, and the length of the frame being read
    int bkclrItemId = 0; // item id of White Background
    StatusText* status;  // child of the window

    void ConnectHost();
    bool RunCommand(const QString& commandLine);
    void writeData(const QString& message);
    void checkDeleteTempFile();
    struct MenuRow;
    void BuildMenus();
    QMenu* AddMenu(const QString& title);
    void AddMenuRow(const MenuRow& row);
    void PlaceWindow();
    QAction* FindViewItem(int id) const;
    void CheckBackgroundItem();
    bool StoreFileName(const QByteArray& name);
    void ForgetDocument(const QString& name);

    // The order of the slots is the order of their indices in the meta-object.
public slots:
    /// Asks for a file and loads it; a cancelled dialog changes nothing.
    void choose();
    /// Writes the view's picture as a JPEG image: under the name that the command line gave when
    /// that asked for it, else where the user says.
    void ExportJpeg();
    /// Writes the graph as an EPS file, named like a JPEG image.
    void ExportEPS();

private slots:
    void saveAs();
    void print();
    void backclr();
    void savesettings();
    void refresh();
    void resetaspect();
    void fileProperties();
    void about();
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    /// Reads one command line from the host and carries it out.
    void readData();
    /// Ends the connection.
    void deleteSocket();

protected:
    void closeEvent(QCloseEvent* event) override;
};
