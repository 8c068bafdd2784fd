// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "tests/e2e/screen.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QProcess>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <vector>

// The leak check of the sanitizer, for the test's own process: it looks at a program that drives
// others and sometimes fails by itself. The viewer's own is not affected.
extern "C" int
__lsan_is_turned_off();    // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
int __lsan_is_turned_off() // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
{
    return 1;
}

namespace {

constexpr int kToolPatience = 10'000; // longest that one call of a tool may take, milliseconds
constexpr int kDragSteps = 4;
// Space at the left and right of a text that tells it from the start of a longer one. Words are
// closer to each other, menu titles are farther apart.
constexpr int kTextMargin = 6;
// Pixels between these are the soft edges of letters: how dark they are depends on the background.
constexpr int kDark = 75;
constexpr int kLight = 180;

// One pixel that a text needs to be dark or light, relative to the text's corner.
struct TextPixel {
    QPoint at;
    bool dark;
};

struct TextImage {
    QSize size; // margins included
    std::vector<TextPixel> pixels;
};

QImage RenderText(const QString& text)
{
    const QFontMetrics metrics(QGuiApplication::font());
    const QSize size = metrics.size(Qt::TextShowMnemonic, text);
    QImage image(size + QSize(2 * kTextMargin, 2), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.drawText(QRect(QPoint(kTextMargin, 1), size), Qt::TextShowMnemonic | Qt::TextSingleLine,
                     text);
    return image;
}

// The dark pixels come first: most places of a screen are light, so that a search gives up early
// there.
TextImage ReadText(const QImage& image)
{
    TextImage text{image.size(), {}};
    for (const bool dark : {true, false}) {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const int gray = qGray(image.pixel(x, y));
                if (dark ? gray < kDark : gray > kLight)
                    text.pixels.push_back({{x, y}, dark});
            }
        }
    }
    return text;
}

bool IsTextAt(const QImage& gray, QPoint corner, const TextImage& text)
{
    return std::all_of(text.pixels.begin(), text.pixels.end(), [&](const TextPixel& pixel) {
        const QPoint at = corner + pixel.at;
        const int value = gray.constScanLine(at.y())[at.x()];
        return pixel.dark ? value < (kDark + kLight) / 2 : value > (kDark + kLight) / 2;
    });
}

template <typename Action>
void ForEachPixel(const QImage& screen, const QRect& area, QColor color, Action action)
{
    const QRect inside = area.intersected(screen.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (screen.pixelColor(x, y) == color)
                action(QPoint(x, y));
        }
    }
}

QStringList MouseTo(QPoint at)
{
    return {QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y())};
}

void Xdotool(const QStringList& arguments)
{
    RunTool(QStringLiteral("xdotool"), arguments);
}

// Connects to the X server and says hello, which is when it gives the ids. Returns whether it
// answered.
bool Greet(int socket)
{
    sockaddr_un server = {};
    server.sun_family = AF_UNIX;
    const QByteArray path = "/tmp/.X11-unix/X" + qgetenv("DISPLAY").mid(1);
    memcpy(server.sun_path, path.constData(),
           std::min<size_t>(static_cast<size_t>(path.size()), sizeof server.sun_path - 1));
    // Little-endian, protocol 11.0, without a key.
    constexpr char kHello[12] = {'l', 0, 11};
    char answer = 0;
    return connect(socket, reinterpret_cast<const sockaddr*>(&server), sizeof server) == 0 &&
           write(socket, kHello, sizeof kHello) == sizeof kHello && read(socket, &answer, 1) == 1 &&
           answer == 1;
}

} // namespace

void TakeFreeWindowIds()
{
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QVERIFY(connection >= 0); // and never closed
    QVERIFY(Greet(connection));
}

QString RunTool(const QString& program, const QStringList& arguments)
{
    QProcess tool;
    tool.start(program, arguments, QIODevice::ReadOnly);
    const bool finished = tool.waitForFinished(kToolPatience);
    if (!finished || tool.exitStatus() != QProcess::NormalExit || tool.exitCode() != 0)
        return {};
    return QString::fromLocal8Bit(tool.readAllStandardOutput()).trimmed();
}

void CheckTools()
{
    QVERIFY2(!RunTool(QStringLiteral("xdotool"), {QStringLiteral("getdisplaygeometry")}).isEmpty(),
             "Is the package xdotool installed, and is this run by with-xserver.sh?");
}

QList<WindowId> VisibleWindows(qint64 process)
{
    const QString found = RunTool(QStringLiteral("xdotool"),
                                  {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                   QStringLiteral("--pid"), QString::number(process)});
    return found.split(u'\n', Qt::SkipEmptyParts);
}

QString WindowTitle(const WindowId& window)
{
    return RunTool(QStringLiteral("xdotool"), {QStringLiteral("getwindowname"), window});
}

// The window manager says which window is active before that has the keyboard, and keys that come
// in between are lost.
WindowId ActiveWindow()
{
    return RunTool(QStringLiteral("xdotool"), {QStringLiteral("getwindowfocus")});
}

// xdotool counts the frame twice in the position.
QRect ContentArea(const WindowId& window)
{
    const QString report = RunTool(QStringLiteral("xwininfo"), {QStringLiteral("-id"), window});
    const auto number = [&report](const char* name) {
        const QRegularExpression line(QString::fromLatin1(name) + QStringLiteral(": +(-?\\d+)"));
        return line.match(report).captured(1).toInt();
    };
    return {number("Absolute upper-left X"), number("Absolute upper-left Y"), number("Width"),
            number("Height")};
}

QRect FrameArea(const WindowId& window)
{
    const QString report =
        RunTool(QStringLiteral("xprop"), {QStringLiteral("-notype"), QStringLiteral("-id"), window,
                                          QStringLiteral("_NET_FRAME_EXTENTS")});
    const QRegularExpression numbers(QStringLiteral("= (\\d+), (\\d+), (\\d+), (\\d+)"));
    const QRegularExpressionMatch match = numbers.match(report);
    const auto width = [&match](int side) { return match.captured(side).toInt(); };
    return ContentArea(window).adjusted(-width(1), -width(3), width(2), width(4));
}

void PressKeys(const QString& keys)
{
    Xdotool({QStringLiteral("key"), keys});
}

void TypeText(const QString& text)
{
    Xdotool({QStringLiteral("type"), text});
}

void Click(QPoint at)
{
    Xdotool(MouseTo(at) + QStringList{QStringLiteral("click"), QStringLiteral("1")});
}

void Drag(QPoint from, QPoint to)
{
    QStringList steps =
        MouseTo(from) + QStringList{QStringLiteral("mousedown"), QStringLiteral("1")};
    for (int step = 1; step <= kDragSteps; ++step)
        steps += MouseTo(from + (to - from) * step / kDragSteps);
    Xdotool(steps);
}

void Drop()
{
    Xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
}

QImage GrabScreen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}

QColor ScreenColor(QPoint at)
{
    return GrabScreen().pixelColor(at);
}

qsizetype CountColor(const QImage& screen, const QRect& area, QColor color)
{
    qsizetype count = 0;
    ForEachPixel(screen, area, color, [&count](QPoint /*at*/) { ++count; });
    return count;
}

QRect ColorBox(const QImage& screen, const QRect& area, QColor color)
{
    QRect box;
    ForEachPixel(screen, area, color, [&box](QPoint at) { box |= QRect(at, QSize(1, 1)); });
    return box;
}

std::optional<QRect> FindText(const QImage& screen, const QRect& area, const QString& text)
{
    const QImage gray = screen.convertToFormat(QImage::Format_Grayscale8);
    const TextImage wanted = ReadText(RenderText(text));
    const QRect inside = area.intersected(screen.rect());
    for (int y = inside.top(); y + wanted.size.height() <= inside.bottom() + 1; ++y) {
        for (int x = inside.left(); x + wanted.size.width() <= inside.right() + 1; ++x) {
            if (IsTextAt(gray, {x, y}, wanted))
                return QRect(QPoint(x, y), wanted.size).adjusted(kTextMargin, 0, -kTextMargin, 0);
        }
    }
    return {};
}
