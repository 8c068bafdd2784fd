// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
//
// What tests of the windows share: a fresh program state in a directory of its own, and answers to
// modal dialogs.
#pragma once

#include "app/appwindow.h"
#include "app/drawview.h"
#include "app/state/globals.h"
#include "meta/plfbuffer.h"
#include "support/text.h"
#include "tests/plfwriter.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QRegion>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <deque>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

namespace fixture {

/// Gives every variable the value that it starts with, but for the directories that the start of
/// the program finds out.
inline void ResetGlobals()
{
    FreePlfBuffer();
    for (char* text : {gszPlffileOrig, gszPlffileName, gszCurrentWorkingDir, gszExename,
                       gszCvtFilenameBase, gszCvtFilename, gszCvtSavePath, gszKrvServerName})
        text[0] = 0;
    std::fill(std::begin(gszFileVersion), std::end(gszFileVersion), '\0');
    CopyText(gszFileVersion, "1.0");
    grWinPos = {200, 200, 840, 687, 640, 487};
    gfCmdlineWndpos = giCmdArg = giCmdPrintOrientation = giCmdPrintPapertype = giAutosave = 0;
    gbBkClrWhite = true;
    gbCmdQuit = gbIsTempFile = false;
    giExportQuality = 10;
    giPrtMinLineWidth = 2;
    giPageX = giPageY = 0;
    gdPageSizeX = gdPageSizeY = 1.0;
    gfEpsUseBkClr = gfEpsCvt2Blk = 0;
    gdEpsCvtScale = 0.25;
    gdwFilesize = gdwBkClrFile = gdwVectorCnt = 0;
    gpMainwnd = nullptr;
    gpDraw = nullptr;
}

/// The directories of one test: home, the program's and the working directory, all empty, with the
/// globals reset to them.
class Directories
{
public:
    Directories()
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

    /// The path of a file or directory below the test's own directory.
    [[nodiscard]] std::string Path(const std::string& name) const
    {
        return root.path().toStdString() + '/' + name;
    }

    /// Writes a file and returns its path.
    [[nodiscard]] std::string Write(const std::string& name, const std::string& bytes) const
    {
        std::string path = Path(name);
        if (!plf::WriteFile(path, bytes))
            qFatal("cannot write %s", path.c_str());
        return path;
    }

private:
    template <size_t size> void Make(const char* name, char (&global)[size])
    {
        const std::string path = Path(name);
        QVERIFY(QDir().mkpath(QString::fromStdString(path)));
        QVERIFY(CopyText(global, path.c_str()));
    }

    QTemporaryDir root;
};

/// Answers modal dialogs in the order in which they are expected. One that nobody expects is
/// closed and remembered, so that no test hangs.
class Dialogs
{
public:
    Dialogs()
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] { Look(); });
        timer.start(5);
    }

    /// Calls handler once with the next dialog, which must be a T. A dialog that the handler leaves
    /// open is rejected.
    template <typename T> void Expect(std::function<void(T&)> handler)
    {
        expected.push_back([handler = std::move(handler)](QDialog& dialog) {
            auto* right = qobject_cast<T*>(&dialog);
            if (right != nullptr)
                handler(*right);
            return right != nullptr;
        });
    }

    /// From now on the next expected dialog may open while the handler of the last one still runs.
    void AnswerNested() { isNested = true; }

    /// Dialogs that were expected and have not come.
    [[nodiscard]] int Pending() const { return static_cast<int>(expected.size()); }
    /// Titles and texts of the dialogs that nobody expected.
    [[nodiscard]] QStringList Strangers() const { return strangers; }

private:
    void Look()
    {
        const QPointer<QDialog> dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog.isNull() || !dialog->isVisible() || inHand.contains(dialog))
            return;
        inHand.append(dialog);
        if (isNested)
            QMetaObject::invokeMethod(
                &timer, [this, dialog] { Deal(dialog); }, Qt::QueuedConnection);
        else
            Deal(dialog);
    }

    void Deal(const QPointer<QDialog>& dialog)
    {
        if (!dialog.isNull() && dialog->isVisible() && !Answer(*dialog))
            strangers.append(Describe(*dialog));
        if (!dialog.isNull() && dialog->isVisible())
            dialog->reject();
        inHand.removeAll(dialog);
    }

    bool Answer(QDialog& dialog)
    {
        if (expected.empty())
            return false;
        const auto answer = std::move(expected.front());
        expected.pop_front();
        return answer(dialog);
    }

    static QString Describe(const QDialog& dialog)
    {
        const auto* box = qobject_cast<const QMessageBox*>(&dialog);
        return dialog.windowTitle() + QStringLiteral(": ") + (box ? box->text() : QString());
    }

    QTimer timer;
    std::deque<std::function<bool(QDialog&)>> expected;
    QList<QPointer<QDialog>> inHand;
    bool isNested = false;
    QStringList strangers;
};

/// What a message box looks like.
struct Box {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    Qt::WindowFlags flags;
    QWidget* parent = nullptr;
    bool isModal = false;
    int shown = 0; // how often
};

/// Expects a message box, describes it in seen (which must outlive it) and presses its OK button.
inline void ExpectBox(Dialogs& dialogs, Box& seen)
{
    dialogs.Expect<QMessageBox>([&seen](QMessageBox& box) {
        seen = {box.windowTitle(), box.text(),         box.icon(),    box.standardButtons(),
                box.windowFlags(), box.parentWidget(), box.isModal(), seen.shown + 1};
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
}

/// The main window as the program makes it. The window goes with the object unless it was closed.
class Window
{
public:
    Window() : window(new AppWindow) { gpMainwnd = window; }
    ~Window()
    {
        delete window.data();
        gpMainwnd = nullptr;
        gpDraw = nullptr;
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Adds the view, which loads gszPlffileOrig or asks for a file.
    void AddView()
    {
        gpDraw = new DrawView(window);
        window->setCentralWidget(gpDraw);
    }

    /// The same, with a file to load.
    void AddViewOf(const std::string& path)
    {
        QVERIFY(CopyText(gszPlffileOrig, path.c_str()));
        AddView();
    }

    /// Shows the window and waits until it takes keys.
    [[nodiscard]] bool Show()
    {
        window->show();
        window->activateWindow();
        return QTest::qWaitForWindowActive(window);
    }

    AppWindow* operator->() const { return window; }
    [[nodiscard]] AppWindow* Get() const { return window; }
    [[nodiscard]] bool IsGone() const { return window.isNull(); }

private:
    QPointer<AppWindow> window;
};

/// How long the text that the status bar shows was to stay when it came, milliseconds; 0 = until
/// the next one. Nothing is waited for: the status bar keeps a timer while a text has a time.
inline int StatusTime(const Window& window)
{
    const auto* timer = window->statusBar()->findChild<QTimer*>();
    return timer != nullptr && timer->isActive() ? timer->interval() : 0;
}

/// Lets that time be over now.
inline void EndStatusTime(const Window& window)
{
    auto* timer = window->statusBar()->findChild<QTimer*>();
    QVERIFY(timer != nullptr && timer->isActive());
    QTimerEvent end(timer->timerId());
    QCoreApplication::sendEvent(timer, &end);
}

/// Lets everything happen that waits to happen: paints, timers that are due, deletions.
inline void Settle()
{
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

/// Remembers what the paint events of a widget covered.
class PaintLog : public QObject
{
public:
    explicit PaintLog(QWidget* widget) { widget->installEventFilter(this); }
    void Clear() { painted = QRegion(); }
    /// Everything inside area was painted.
    [[nodiscard]] bool Covers(const QRect& area) const
    {
        return QRegion(area).subtracted(painted).isEmpty();
    }
    /// Something inside area was painted.
    [[nodiscard]] bool Touches(const QRect& area) const { return painted.intersects(area); }

    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

private:
    QRegion painted;
};

/// The part of the file that a view shows, in drawing units; a null rectangle without a file.
inline QRect ShownArea(DrawView& view)
{
    QImage image(view.size().expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    QPainter painter(&image);
    view.drawIt(&painter);
    return gszPlffileOrig[0] != 0 ? painter.window() : QRect();
}

/// The signatures of a class's own methods of one kind, in the order of their indices.
inline QStringList OwnMethods(const QMetaObject& meta, QMetaMethod::MethodType kind)
{
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == kind)
            signatures.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    return signatures;
}

/// The rows of the table that the items have, up to the first one that is missing. Other items may
/// stand between them.
inline QStringList InOrder(const QStringList& table, const QStringList& items)
{
    QStringList found;
    for (const QString& item : items) {
        if (found.size() < table.size() && item == table.at(found.size()))
            found.append(item);
    }
    return found;
}

/// Puts a name into a file dialog that opens, and confirms it. The dialog takes the name only when
/// it has read the folder, which happens beside the event loop.
inline void TypeName(QFileDialog& dialog, const QString& name)
{
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    QVERIFY(edit != nullptr);
    edit->setText(name); // typed, it would open a list of completions on top
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    QVERIFY(buttons != nullptr);
    QTRY_VERIFY(buttons->button(QDialogButtonBox::Open)->isEnabled());
    QTest::keyClick(edit, Qt::Key_Enter);
}

/// Agrees to the question whether a file may be replaced, if one stands there.
inline void AgreeToReplace()
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box != nullptr && box->button(QMessageBox::Yes) != nullptr)
        box->button(QMessageBox::Yes)->click();
}

/// What a view that is not zoomed shows.
constexpr QRect kWholeArea(0, 0, 4096, 3120);

} // namespace fixture
