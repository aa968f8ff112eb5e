#include "host/novahost/optionchecks.h"

#include "host/novahost/nearest.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <iterator>

namespace novahost {

std::string checkMask(const std::string& given)
{
    bool ok = false;
    QString::fromStdString(given).toUInt(&ok, 0);
    return ok ? std::string()
              : "a mask is a number below 2^32, such as 64 or 0x40; \"" + given + "\" is none";
}

bool readSize(const std::string& given, int& width, int& height)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const QRegularExpressionMatch match = form.match(QString::fromStdString(given));
    if (!match.hasMatch() || match.captured(1).toInt() == 0 || match.captured(2).toInt() == 0)
        return false;
    width = match.captured(1).toInt();
    height = match.captured(2).toInt();
    return true;
}

std::string checkSize(const std::string& given)
{
    int width = 0, height = 0;
    return readSize(given, width, height)
        ? std::string()
        : "a size is two numbers above 0, such as 1000x700; \"" + given + "\" is none";
}

std::string checkFile(const std::string& given)
{
    const QFileInfo file(QString::fromLocal8Bit(given.c_str()));
    if (file.isDir())
        return '"' + given + "\" is a directory";
    if (file.exists()) // a pipe, too
        return {};
    const QString folder = given.find('/') == std::string::npos ? QString() : file.path() + QLatin1Char('/');
    const QString meant = nearestFile(file.dir().entryList(QDir::Files), file.fileName());
    return "there is no file \"" + given + '"'
        + (meant.isEmpty() ? std::string() : "; did you mean " + (folder + meant).toStdString() + '?');
}

std::string checkScript(const std::string& given)
{
    return given == "-" ? std::string() : checkFile(given);
}

Check checkNumber(const char* what, double least, double most)
{
    const QString expected = QStringLiteral("%1 from %2 to %3 is expected, not ")
                                 .arg(QLatin1String(what))
                                 .arg(least)
                                 .arg(most, 0, 'f', 0);
    return [=](const std::string& given) {
        bool ok = false;
        const double value = QString::fromStdString(given).toDouble(&ok);
        return ok && value >= least && value <= most ? std::string() : expected.toStdString() + given;
    };
}

std::string checkPort(const std::string& given)
{
    bool ok = false;
    const int port = QString::fromStdString(given).toInt(&ok);
    constexpr int Most = 65'535;
    return ok && port > 0 && port <= Most ? std::string()
                                          : "a port from 1 to 65535 is expected, not " + given;
}

QStringList shellNames()
{
    return { QStringLiteral("bash"), QStringLiteral("zsh"), QStringLiteral("fish") };
}

std::string checkShell(const std::string& given)
{
    return shellNames().contains(QString::fromStdString(given))
        ? std::string()
        : "one of " + shellNames().join(QLatin1String(", ")).toStdString() + " is expected, not " + given;
}

std::string describeValue(const std::string& form)
{
    static constexpr struct {
        const char* form;
        const char* text;
    } Texts[] = { { "FILE", "a file" }, { "DIR", "a directory" }, { "MASK", "a mask" }, { "PORT", "a port" },
        { "SECONDS", "a number of seconds" }, { "FACTOR", "a factor" },
        { "WxH", "a size, such as 1000x700," }, { "SERVICE", "a service" }, { "STEP", "a step" } };
    const auto* found = std::find_if(
        std::begin(Texts), std::end(Texts), [&](const auto& one) { return form.rfind(one.form, 0) == 0; });
    return found == std::end(Texts) ? "a value" : found->text;
}

} // namespace novahost
