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

/// The file types of the dialogs that open and save graphs.
constexpr char kGraphFilter[] = "KORVEL Graphics (*.plf);;All Files (*)";

class AppWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Reads the configuration and settings files, creates the menus and places the window at
    /// grWinPos. The window deletes itself when it is closed.
    AppWindow();
    ~AppWindow() override;

    /// Loads a graph and shows it; the view keeps its zoom. A failure is reported in a box and in
    /// the status bar; there is no current file then.
    /// @param name  absolute, with a directory, or relative to the working directory at start-up
    void load(const QString& name);
    /// The same for a name in local 8-bit form, which need not be valid text.
    /// @param name  its name in the status bar
    void loadFile(const QByteArray& path, const QString& name);

    /// Shows all texts of the status bar.
    StatusText* statusText() const { return status; }

    /// Does with files what closing the window would: writes the settings if autosave is on, and
    /// deletes the host's temporary file. For when the program ends without closing it.
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
    /// Sends a message to the host, if the link is open. The program itself only acknowledges.
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
    /// Asks for a file and loads it; canceling the dialog changes nothing.
    void choose();
    /// Writes the view's picture as a JPEG image: under the name of the command line if that
    /// requested it, otherwise under a name that the user chooses.
    void ExportJpeg();
    /// Writes the graph as an EPS file, named in the same way.
    void ExportEPS();

private slots:
    void saveAs();
    void print();
    void backclr();
    void savesettings();
    /// Shows the whole graph again.
    void refresh();
    void resetaspect();
    void fileProperties();
    void about();
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    /// Reads one command line from the host and runs it.
    void readData();
    /// Ends the connection.
    void deleteSocket();

protected:
    void closeEvent(QCloseEvent* event) override;
};
