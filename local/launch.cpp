#include "local/launch.h"

#include "krt/ksafe.h"

#include <QDesktopServices>
#include <QDir>
#include <QRegularExpression>
#include <algorithm>
#include <chrono>
#include <deque>

namespace jsapi {

namespace {

constexpr int MaxLaunches = 20;
constexpr std::chrono::seconds LaunchPeriod { 10 };
/// What is passed on is an argument of another program, which has 128 KiB at most.
constexpr int MaxAddress = 60'000;
constexpr std::size_t MaxRecipients = 100;
constexpr int MaxMailAddress = 254;

struct Launch {
    JSContextEnv page;
    std::chrono::steady_clock::time_point time;
};

/// One word of a command, whatever is in it: see krt::ksafe::KProcess.
QString quoteWord(QString word)
{
    const QLatin1Char quote('"');
    return quote + word.replace(quote, QLatin1String("\"\"\"")) + quote;
}

bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control;
}

bool isMailAddress(const QString& string)
{
    // Neither what separates addresses and headers, nor quoting, which mail programs read differently.
    static const QRegularExpression form(
        heapString(R"(\A[^\s\p{C}@,;:<>()\[\]\\"]+@[^\s\p{C}@,;:<>()\[\]\\"]+\z)"));
    return string.size() <= MaxMailAddress && form.match(string).hasMatch();
}

QString encode(const QString& string, const char* plain = "")
{
    return QString::fromLatin1(QUrl::toPercentEncoding(string, plain));
}

/// Addresses separated by commas; nothing when one of them is none.
std::optional<QString> joinAddresses(const std::vector<std::string>& addresses, bool encoded)
{
    QStringList joined;
    for (const std::string& address : addresses) {
        const QString string = QString::fromStdString(address);
        if (!isMailAddress(string))
            return std::nullopt;
        joined << (encoded ? encode(string, "@") : string);
    }
    return joined.join(QLatin1Char(','));
}

/// The address of a mail; nothing for what is none.
std::optional<QUrl> makeMailAddress(const Mail& mail)
{
    const QString subject = QString::fromStdString(mail.subject);
    QString body = QString::fromStdString(mail.body);
    body.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    const bool hasControls = std::any_of(subject.begin(), subject.end(), isControl)
        || std::any_of(body.begin(), body.end(), [](QChar character) {
               return isControl(character) && character != QLatin1Char('\n')
                   && character != QLatin1Char('\t');
           });
    const auto to = joinAddresses(mail.to, true);
    const auto cc = joinAddresses(mail.cc, true);
    const auto bcc = joinAddresses(mail.bcc, true);
    if (!to || !cc || !bcc || hasControls
        || mail.to.size() + mail.cc.size() + mail.bcc.size() > MaxRecipients)
        return std::nullopt;
    QStringList headers;
    const auto add = [&](const char* name, const QString& value) {
        if (!value.isEmpty())
            headers << QLatin1String(name) + QLatin1Char('=') + value;
    };
    add("cc", *cc);
    add("bcc", *bcc);
    add("subject", encode(subject));
    add("body", encode(body.replace(QLatin1Char('\n'), QLatin1String("\r\n"))));
    QString address = heapString("mailto:") + *to;
    if (!headers.isEmpty())
        address += QLatin1Char('?') + headers.join(QLatin1Char('&'));
    if (address.size() > MaxAddress)
        return std::nullopt;
    return QUrl::fromEncoded(address.toLatin1(), QUrl::StrictMode);
}

/// Whether an address has neither spaces nor control characters nor backslashes, which programs read differently.
bool isPlain(const QString& address)
{
    return address.size() <= MaxAddress && std::none_of(address.begin(), address.end(), [](QChar character) {
        return character.isSpace() || isControl(character) || character == QLatin1Char('\\');
    });
}

} // namespace

bool mayLaunch(const JSContextEnv& page)
{
    static std::deque<Launch> launches;
    const auto now = std::chrono::steady_clock::now();
    while (!launches.empty() && now - launches.front().time > LaunchPeriod)
        launches.pop_front();
    const auto own = std::count_if(
        launches.begin(), launches.end(), [&](const Launch& launch) { return launch.page == page; });
    if (own >= MaxLaunches)
        return false;
    launches.push_back({ page, now });
    return true;
}

Answer<bool> launchProgram(
    const JSContextEnv& page, const QString& program, const std::vector<std::string>& arguments)
{
    if (!QDir::isAbsolutePath(program) || QDir::cleanPath(program) != program)
        return WrongParameters;
    QString command = quoteWord(program);
    for (const std::string& argument : arguments) {
        if (argument.empty())
            return WrongParameters;
        command += QLatin1Char(' ') + quoteWord(QString::fromStdString(argument));
    }
    if (command.contains(QChar::Null))
        return WrongParameters;
    if (!isPermitted(page, KPagePermission::StartProgram, program))
        return NotPermitted;
    if (!QFileInfo(program).isFile())
        return NoProgram / program;
    if (!mayLaunch(page))
        return TooManyLaunches;
    return krt::ksafe::KProcess::StartDetach(command);
}

std::optional<QUrl> readAddress(const std::string& given, std::initializer_list<const char*> schemes)
{
    const QString string = QString::fromStdString(given);
    const QUrl address(string, QUrl::StrictMode);
    const bool hasScheme = std::any_of(schemes.begin(), schemes.end(),
        [&](const char* scheme) { return address.scheme() == QLatin1String(scheme); });
    if (!isPlain(string) || !address.isValid() || !hasScheme || address.host().isEmpty()
        || address.authority().contains(QLatin1Char('@')) || address.toEncoded().size() > MaxAddress)
        return std::nullopt;
    return address;
}

Answer<bool> openAddress(const JSContextEnv& page, const QUrl& address)
{
    if (!isPermitted(page, KPagePermission::OpenAddress, address.toString(QUrl::FullyEncoded)))
        return NotPermitted;
    if (!mayLaunch(page))
        return TooManyLaunches;
    return QDesktopServices::openUrl(address);
}

std::optional<Mail> readMailAddress(const std::string& given)
{
    const QString string = QString::fromStdString(given);
    const QUrl address(string, QUrl::StrictMode);
    if (!isPlain(string) || !address.isValid() || address.scheme() != QLatin1String("mailto")
        || address.hasFragment())
        return std::nullopt;
    const auto decode = [](const QString& part) {
        return QString::fromUtf8(QByteArray::fromPercentEncoding(part.toLatin1())).toStdString();
    };
    const auto addTo = [&](std::vector<std::string>& list, const QString& part) {
        for (const QString& one : part.split(QLatin1Char(','), Qt::SkipEmptyParts))
            list.push_back(decode(one));
    };
    Mail mail;
    addTo(mail.to, address.path(QUrl::FullyEncoded));
    for (const QString& header :
        address.query(QUrl::FullyEncoded).split(QLatin1Char('&'), Qt::SkipEmptyParts)) {
        const QString name = header.section(QLatin1Char('='), 0, 0).toLower();
        const QString value = header.section(QLatin1Char('='), 1);
        if (name == QLatin1String("to"))
            addTo(mail.to, value);
        else if (name == QLatin1String("cc"))
            addTo(mail.cc, value);
        else if (name == QLatin1String("bcc"))
            addTo(mail.bcc, value);
        else if (name == QLatin1String("subject"))
            mail.subject = decode(value);
        else if (name == QLatin1String("body"))
            mail.body = decode(value);
        else // one that attaches a file, for one
            return std::nullopt;
    }
    return mail;
}

Answer<bool> composeMail(const JSContextEnv& page, const Mail& mail)
{
    const std::optional<QUrl> address = makeMailAddress(mail);
    if (!address)
        return WrongParameters;
    std::vector<std::string> recipients = mail.to;
    recipients.insert(recipients.end(), mail.cc.begin(), mail.cc.end());
    recipients.insert(recipients.end(), mail.bcc.begin(), mail.bcc.end());
    if (!isPermitted(page, KPagePermission::SendMail, joinAddresses(recipients, false).value_or(QString())))
        return NotPermitted;
    if (!mayLaunch(page))
        return TooManyLaunches;
    return QDesktopServices::openUrl(*address);
}

} // namespace jsapi
