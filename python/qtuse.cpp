// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 plotvw contributors
#include "python/qtuse.h"

#include <QGuiApplication>
#include <QThread>

#include <unistd.h>

#include <clocale>
#include <future>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

namespace python {

namespace {

// Of the keeper of this thread.
thread_local QStringList* kept = nullptr;
// Of the thread of the application object, whose words are about itself.
thread_local bool isQuiet = false;

QtMessageHandler previousHandler = nullptr;

void HandleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (kept != nullptr)
        *kept += text;
    else if (!isQuiet)
        previousHandler(type, context, text);
}

// The application object sets the locale of the whole process, and numbers of other libraries would
// get a comma.
class LocaleKeeper
{
public:
    LocaleKeeper() : locale(std::setlocale(LC_ALL, nullptr)) {}
    ~LocaleKeeper() { std::setlocale(LC_ALL, locale.c_str()); }
    LocaleKeeper(const LocaleKeeper&) = delete;
    LocaleKeeper& operator=(const LocaleKeeper&) = delete;

private:
    std::string locale;
};

// An application object in a thread of its own, where it can be ended by whoever is the last to
// need it.
class OwnApplication
{
public:
    OwnApplication() : thread([this] { Run(); }) { started.get_future().wait(); }
    ~OwnApplication()
    {
        ended.set_value();
        thread.join();
    }
    OwnApplication(const OwnApplication&) = delete;
    OwnApplication& operator=(const OwnApplication&) = delete;

private:
    // The arguments outdo the environment, in which a platform may be named that needs a display.
    void Run()
    {
        isQuiet = true;
        char name[] = "plotvw";
        char option[] = "-platform";
        char platform[] = "offscreen";
        char* arguments[] = {name, option, platform, nullptr};
        int count = 3;
        std::unique_ptr<QGuiApplication> application;
        {
            const LocaleKeeper locale;
            application = std::make_unique<QGuiApplication>(count, arguments);
        }
        started.set_value();
        ended.get_future().wait();
    }

    std::promise<void> started, ended;
    std::thread thread; // the last member: it uses the others
};

class HandlerUse
{
public:
    HandlerUse() { previousHandler = qInstallMessageHandler(HandleMessage); }
    // Whoever replaced the handler meanwhile keeps it.
    ~HandlerUse()
    {
        const QtMessageHandler latest = qInstallMessageHandler(previousHandler);
        if (latest != HandleMessage)
            qInstallMessageHandler(latest);
    }
    HandlerUse(const HandlerUse&) = delete;
    HandlerUse& operator=(const HandlerUse&) = delete;
};

struct Preparation {
    HandlerUse handler;
    std::unique_ptr<OwnApplication> application; // null where the process has one
};

std::mutex mutex;
int uses = 0;
std::unique_ptr<Preparation> preparation; // while there are uses

void CheckApplication(const QCoreApplication* application)
{
    if (qobject_cast<const QGuiApplication*>(application) == nullptr)
        throw std::runtime_error("the process has a QCoreApplication, with which Qt draws no "
                                 "texts; make a QGuiApplication or a QApplication instead");
}

} // namespace

QtUse::QtUse()
{
    const std::lock_guard lock(mutex);
    const QCoreApplication* application = QCoreApplication::instance();
    if (application != nullptr)
        CheckApplication(application);
    if (preparation == nullptr)
        preparation = std::make_unique<Preparation>();
    if (application == nullptr)
        preparation->application = std::make_unique<OwnApplication>();
    ++uses;
}

QtUse::~QtUse()
{
    const std::lock_guard lock(mutex);
    --uses;
    if (uses == 0)
        preparation.reset();
}

MessageKeeper::MessageKeeper()
{
    kept = &messages;
}

MessageKeeper::~MessageKeeper()
{
    kept = nullptr;
}

void TellFirstThread()
{
    if (getpid() == gettid())
        QThread::currentThread();
}

} // namespace python
