#include "local/js_api_tools.h"

#include "krt/dirs.h"
#include "local/launch.h"
#include "suite/kcoreapplication.h"

#include <QDir>

namespace jsapi {

template <>
struct Argument<KDomainManager>
    : ServiceArgument<KDomainManager, &KCoreApplication::domainManager, EmptyHandle> {
};

struct KJsApiTools::UrlOptions {
    std::string url;
    static constexpr auto fields()
    {
        return strictly(
            std::tuple(required("url", &UrlOptions::url, "the address: `https`, `http` or `mailto`")));
    }
};

struct KJsApiTools::DomainOptions {
    QString name;
    static constexpr auto fields()
    {
        return strictly(std::tuple(
            required("name", &DomainOptions::name, "the service, as the suite names it: `account`")));
    }
};

struct KJsApiTools::OwnProgramOptions {
    std::string program;
    std::vector<std::string> arguments;
    static constexpr auto fields()
    {
        using Self = OwnProgramOptions;
        return strictly(std::tuple(
            required("program", &Self::program, "its file in the suite's directory, without a `/`"),
            optional("arguments", &Self::arguments, "its arguments; none may be empty")));
    }
};

template <> struct Fields<Mail> {
    static constexpr auto list()
    {
        return strictly(std::tuple(
            optional("to", &Mail::to, "who gets it: `ada@example.com`, without a name"),
            optional("cc", &Mail::cc, "who gets a copy"),
            optional("bcc", &Mail::bcc, "who gets a copy that the others do not see"),
            optional("subject", &Mail::subject, "one line"), optional("body", &Mail::body, "plain text")));
    }
};

const MemberList& KJsApiTools::members()
{
    using Self = KJsApiTools;
    static const MemberList list {
        "Pages, mail, processes and archives. A page opens, shows or starts at most "
        "20 things in ten seconds.",
        {
            member<&Self::openUrl>(u"openUrl", Category::Usual, Type::JsValue, { Type::JsValue },
                "Has the desktop open an address in the program for it. Returns whether it does. Refused are "
                "other schemes, addresses with a user or a password, and those of mails with other headers than "
                "`sendMail` has.",
                { &WrongParameters, &NotPermitted, &TooManyLaunches }),
            member<&Self::openInnerUrl>(u"openInnerUrl", Category::Usual, Type::JsValue, { Type::JsValue },
                "Opens a window of the suite with a page. Returns the identifier of its view, for "
                "`WebviewMgr.getWebview`. The window goes when the user closes it.",
                { &WrongParameters, &NotPermitted, &TooManyLaunches, &NoInnerPage }),
            member<&Self::getDomainUrl>(u"getDomainUrl", Category::Usual, Type::JsValue, { Type::JsValue },
                "Returns the address of a service of the suite's: `https://account.example`, empty when there "
                "is none of that name."),
            member<&Self::launchProcessByNova>(u"launchProcessByNova", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Starts a program of the suite's, if the suite lets the page start this one. Returns whether "
                "it was started.",
                { &WrongParameters, &NotPermitted, &NoProgram, &TooManyLaunches }),
            member<&Self::getIntranetType>(u"getIntranetType", Category::Usual, Type::JsValue,
                "Returns which services the suite uses: 0 the public ones, 1 those of a private installation, "
                "2 both."),
            member<&Self::compress>(u"compress", Category::Launch, Type::JsValue, { Type::JsValue },
                "Makes a zip archive of files and directories. Each is named in the archive without the directories "
                "that lead there; of a directory all that is in it goes in, but no links, pipes and devices. Resolves "
                "when the archive is in its place. On a failure there is no archive, and one that was there is as it "
                "was.",
                { &WrongParameters, &ArchiveNewPathIsIllegal, &ArchiveTargetExists, &ArchiveSourceMissing,
                    &ArchiveSourceRefused, &ArchiveTooManyEntries, &ArchiveNotWritten, &ArchiveNoSpace,
                    &PromiseServiceNull }),
            member<&Self::decompress>(u"decompress", Category::Launch, Type::JsValue, { Type::JsValue },
                "Unpacks a zip archive into a directory. Directories become one with those that are there. Refused "
                "are archives with names that lead elsewhere, links, programs, encrypted entries, or more than 100000 "
                "entries. Resolves when all files are in their places. On a failure nothing has changed.",
                { &WrongParameters, &ArchivePathIsIllegal, &ArchiveNewPathIsIllegal, &ArchiveDamaged,
                    &ArchiveEntryRefused, &ArchiveEncrypted, &ArchiveTooManyEntries, &ArchiveTooLarge,
                    &ArchiveTargetExists, &ArchiveNotWritten, &ArchiveNoSpace, &PromiseServiceNull }),
            member<&Self::showConfirmDlg>(u"showConfirmDlg", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Has the user decide in a dialog. Returns the index of the button, -1 when the dialog was "
                "cancelled, or another one of the page is open.",
                { &WrongParameters }),
            member<&Self::sendMail>(u"sendMail", Category::Usual, Type::JsValue, { Type::JsValue },
                "Shows a mail in the user's mail program, for the user to send. Returns whether the desktop "
                "has one started. At most 100 addresses, and 60,000 characters as an address (URL).",
                { &MissingParameters, &WrongParameters, &NotPermitted, &TooManyLaunches }),
        }
    };
    return list;
}

Answer<bool> KJsApiTools::openUrl(const JSContextEnv& page, const UrlOptions& options)
{
    if (const std::optional<Mail> mail = readMailAddress(options.url)) {
        if (!isPermitted(page, KPagePermission::OpenAddress, QString::fromStdString(options.url)))
            return NotPermitted;
        return composeMail(page, *mail);
    }
    const std::optional<QUrl> address = readAddress(options.url, { "https", "http" });
    if (!address)
        return WrongParameters;
    return openAddress(page, *address);
}

Answer<QString> KJsApiTools::openInnerUrl(const JSContextEnv& page, const InnerPageOptions& options)
{
    const std::optional<QUrl> address = readAddress(options.url, { "https", "http", "nova" });
    if (!address)
        return WrongParameters;
    return openInnerPage(page, *address, options);
}

Answer<QString> KJsApiTools::getDomainUrl(KDomainManager& domains, const DomainOptions& options)
{
    return domains.domainUrl(options.name);
}

Answer<bool> KJsApiTools::launchProcessByNova(const JSContextEnv& page, const OwnProgramOptions& options)
{
    const QString name = QString::fromStdString(options.program);
    if (name.contains(QLatin1Char('/')) || name == QLatin1String(".") || name == QLatin1String(".."))
        return WrongParameters;
    return launchProgram(
        page, QDir::cleanPath(krt::dirs::officeInstallRoot()) + QLatin1Char('/') + name, options.arguments);
}

Answer<std::int32_t> KJsApiTools::getIntranetType(KDomainManager& domains)
{
    return domains.intranetType();
}

Answer<Promise<CompressResult>> KJsApiTools::compress(
    const JSContextEnv& page, const CompressOptions& options)
{
    return compressFiles(page, options);
}

Answer<Promise<DecompressResult>> KJsApiTools::decompress(
    const JSContextEnv& page, const DecompressOptions& options)
{
    return unpackArchive(page, options);
}

Answer<std::int32_t> KJsApiTools::showConfirmDlg(const JSContextEnv& page, const ConfirmOptions& options)
{
    return askToConfirm(page, options);
}

Answer<bool> KJsApiTools::sendMail(const JSContextEnv& page, const Mail& mail)
{
    if (mail.to.empty() && mail.cc.empty() && mail.bcc.empty() && mail.subject.empty() && mail.body.empty())
        return MissingParameters;
    return composeMail(page, mail);
}

} // namespace jsapi
