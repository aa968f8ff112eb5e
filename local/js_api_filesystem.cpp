#include "local/js_api_filesystem.h"

#include "local/filemd5.h"

const MemberList& KJsApiFileSystem::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                                            category          answer         parameters
        unbuilt(u"File",                                     Category::Usual,  Type::Object,  { Type::JsValue }),
        unbuilt(u"exists",                                   Category::Usual,  Type::JsValue, { Type::String }),
        unbuilt(u"copy",                                     Category::Usual,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"officeData",                               Category::Usual,  Type::JsValue),
        unbuilt(u"officeHome",                               Category::Usual,  Type::JsValue),
        unbuilt(u"tempPath",                                 Category::Usual,  Type::JsValue),
        unbuilt(u"desktopPath",                              Category::Usual,  Type::JsValue),
        unbuilt(u"homePath",                                 Category::Usual,  Type::JsValue),
        unbuilt(u"documentsPath",                            Category::Usual,  Type::JsValue),
        unbuilt(u"openLocalLocation",                        Category::Usual,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"getDllWorkPath",                           Category::Usual,  Type::JsValue, { Type::String }),
        unbuilt(u"downloadPath",                             Category::Usual,  Type::JsValue),
        unbuilt(u"selectLocalFolder",                        Category::None,   Type::JsValue, { Type::JsValue }),
        unbuilt(u"selectFolderx",                            Category::None,   Type::JsValue, { Type::JsValue }),
        unbuilt(u"mkpath",                                   Category::Usual,  Type::JsValue, { Type::String }),
        unbuilt(u"remove",                                   Category::Usual,  Type::JsValue, { Type::String }),
        unbuilt(u"open",                                     Category::Launch, Type::JsValue, { Type::String }),
        unbuilt(u"getFileStatus",                            Category::Usual,  Type::JsValue, { Type::String }),
        unbuilt(u"getWritableSaveFileName",                  Category::None,   Type::JsValue, { Type::JsValue }),
        unbuilt(u"getExistingDirectory",                     Category::None,   Type::JsValue, { Type::JsValue }),
        unbuilt(u"getOpenFileNames",                         Category::None,   Type::JsValue, { Type::JsValue }),
        unbuilt(u"getOpenFileName",                          Category::None,   Type::JsValue, { Type::JsValue }),
        unbuilt(u"showSelectFilePanel",                      Category::None,   Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::getFileMd5>(u"getFileMd5", Category::Usual,  Type::JsValue, { Type::String }),
        unbuilt(u"startAccess",                              Category::Usual,  Type::JsValue, { Type::JsValue }),
        unbuilt(u"isDir",                                    Category::Usual,  Type::JsValue, { Type::String }),
        unbuilt(u"isDirWritable",                            Category::Usual,  Type::JsValue, { Type::String }),
    }.handingOut<KJsApiFile>();
    // clang-format on
    return list;
}

const MemberList& KJsApiFile::members()
{
    // clang-format off
    static const MemberList list {
        // member          category         answer
        unbuilt(u"exists", Category::Usual, Type::JsValue),
        unbuilt(u"remove", Category::Usual, Type::JsValue),
        unbuilt(u"size",   Category::Usual, Type::JsValue),
    };
    // clang-format on
    return list;
}

Reply KJsApiFileSystem::getFileMd5(Call& call)
{
    return KFileMd5Request::start(call, call.string(0));
}
