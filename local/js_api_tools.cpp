#include "local/js_api_tools.h"

namespace jsapi {

const MemberList& KJsApiTools::members()
{
    using Self = KJsApiTools;
    static const MemberList list { "Pages, mail, processes and archives.",
        {
            unbuilt(u"openUrl", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"openInnerUrl", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getDomainUrl", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"launchProcessByNova", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"getIntranetType", Category::Usual, Type::JsValue),
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
            unbuilt(u"showConfirmDlg", Category::Usual, Type::JsValue, { Type::JsValue }),
            unbuilt(u"sendMail", Category::Usual, Type::JsValue, { Type::JsValue }),
        } };
    return list;
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

} // namespace jsapi
