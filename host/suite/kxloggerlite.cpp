// The log file, logs/suite.log in the data directory. One record a line, its fields separated by tabs:
// local ISO time with its offset, level (info, warning, error), module, text.
#include "suite/kxloggerlite.h"

#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/showntext.h"

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <memory>
#include <mutex>
#include <spdlog/details/log_msg.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <string>

namespace {

using Sink = spdlog::sinks::rotating_file_sink_st;

std::string escape(const std::wstring& text)
{
    return suite::escapeText(QString::fromStdWString(text)).toStdString();
}

/// The open file, with the settings that it was opened with.
class LogFile {
public:
    void write(spdlog::level::level_enum level, const std::wstring& module, const std::wstring& text)
    {
        const std::string name = escape(module);
        const std::string line = escape(text);
        std::lock_guard lock(m_mutex);
        open();
        m_sink->log(spdlog::details::log_msg(name, level, line));
        m_sink->flush();
    }

private:
    void open()
    {
        const QString directory = profile::dataDirectory();
        const profile::Log settings = profile::current()->log;
        if (m_sink && directory == m_directory && settings.maxFileSizeKiB == m_settings.maxFileSizeKiB
            && settings.keptFiles == m_settings.keptFiles)
            return;
        m_sink.reset();
        const QString logs = directory + QStringLiteral("/logs");
        // Checked first: the sink would try several times, with pauses, for every record.
        if (directory.isEmpty() || !QDir().mkpath(logs) || !QFileInfo(logs).isWritable())
            throw spdlog::spdlog_ex("the log can not be written");
        m_sink = std::make_unique<Sink>((logs + QStringLiteral("/suite.log")).toStdString(),
            static_cast<std::size_t>(settings.maxFileSizeKiB) * 1024,
            static_cast<std::size_t>(settings.keptFiles));
        m_sink->set_formatter(
            std::make_unique<spdlog::pattern_formatter>("%Y-%m-%dT%H:%M:%S.%e%z\t%l\t%n\t%v"));
        m_directory = directory;
        m_settings = settings;
    }

    std::mutex m_mutex;
    std::unique_ptr<Sink> m_sink;
    QString m_directory;
    profile::Log m_settings;
};

void write(spdlog::level::level_enum level, const std::wstring& module, const std::wstring& text) noexcept
{
    try {
        if (!profile::serviceOn(QStringLiteral("logger")))
            return;
        static LogFile file;
        file.write(level, module, text);
    } catch (const std::exception&) {
        // The record is dropped: a failing log can not be logged.
    }
}

} // namespace

void KxLoggerLite::writeInfo(const std::wstring& module, const std::wstring& text)
{
    write(spdlog::level::info, module, text);
}

void KxLoggerLite::writeWarning(const std::wstring& module, const std::wstring& text)
{
    write(spdlog::level::warn, module, text);
}

void KxLoggerLite::writeError(const std::wstring& module, const std::wstring& text)
{
    write(spdlog::level::err, module, text);
}
