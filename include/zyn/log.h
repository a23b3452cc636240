/// @file
/// A text log with five levels, to a file, to standard output, or to both.
///
///     ref_ptr<IZynLog> log = newZynLog(path, true, false);   // appends, without an echo
///     log->setName(QStringLiteral("calc"));
///     log->info(QStringLiteral("started"));      // [INFO]2026-03-07 09:05:01 calc started
///     log->setEcho(true);                        // from here on also to standard output
///     if (!log->isOpen()) { log->warn(QStringLiteral("there is no log file")); }
///     log = nullptr;                             // writes the lines in the buffer
///
/// There is no threshold: every call writes its line. Lines stay in a buffer until it is full or
/// the log is deleted. Threads: use a log on one thread at a time.
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

#include <type_traits>

class QString;

namespace zyn {

/// A log, to one file at a time.
class ZYN_EXPORT IZynLog : public ZynReferenced {
public:
    /// Sets the name that follows the time in all later lines. The name of a new log is empty.
    virtual void setName(QString name) = 0;
    /// Sets whether lines also go to standard output while a file is open. Without a file they
    /// always do.
    virtual void setEcho(bool echo) = 0;
    /// Returns the value that setEcho() has set.
    [[nodiscard]] virtual bool getEcho() = 0;
    /// Closes the current file and continues in another one, which is emptied unless `append` is
    /// true. Returns false if that cannot be opened; lines then go to standard output. Lines that a
    /// full disk refuses are lost.
    virtual bool open(QString path, bool append) = 0;
    /// Returns whether lines go to a file.
    [[nodiscard]] virtual bool isOpen() = 0;
    /// Stores two strings, which the log does not show.
    virtual void setParams(QString a, QString b) = 0;
    /// Writes a line of the level in the name.
    /// @{
    virtual void fatal(QString message) = 0;
    virtual void error(QString message) = 0;
    virtual void warn(QString message) = 0;
    virtual void info(QString message) = 0;
    virtual void debug(QString message) = 0;
    /// @}

protected:
    ~IZynLog() override = default;
};

/// Returns a new log in every case. With an empty path, or one that cannot be opened, it writes to
/// standard output, and its echo is set.
[[nodiscard]] ZYN_EXPORT IZynLog* newZynLog(QString path, bool append, bool echo);
constexpr auto factoryOf(std::type_identity<IZynLog>) { return &newZynLog; }

}  // namespace zyn
