#include "cloud/js_api_clouddoc.h"

const MemberList& KJsApiCloudDoc::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                                        category                answer        parameters
        property<&KJsApiCloudDoc::orbitapi>(u"Orbitapi", Category::CloudRequest, Type::Object),
        unbuilt(u"getCloudCachedFile",                   Category::CloudRead,    Type::Object, { Type::String }),
        unbuilt(u"uploadFile2CloudFolder",               Category::CloudWrite,   Type::Object, { Type::JsValue }),
        unbuilt(u"openCloudFolder",                      Category::CloudOpen,    Type::Object, { Type::JsValue }),
        unbuilt(u"getDefaultWorkSpace",                  Category::CloudRead,    Type::Object),
        unbuilt(u"createUploadFileTask",                 Category::CloudWrite,   Type::Object, { Type::JsValue }),
        unbuilt(u"getMyCloudDocumentsLocalPath",         Category::CloudRead,    Type::Object),
        unbuilt(u"syncFolder",                           Category::CloudWrite,   Type::Object, { Type::JsValue }),
        unbuilt(u"saveToCloudDir",                       Category::CloudWrite,   Type::Object, { Type::JsValue }),
        unbuilt(u"getRoamingMode",                       Category::CloudRead,    Type::Object),
        unbuilt(u"changeRoamingMode",                    Category::CloudWrite,   Type::Object, { Type::String }),
        unbuilt(u"getPersonalPrivateGroup",              Category::CloudRead,    Type::Object),
    }.withEvents<KJsApiCloudDoc>().handingOut<KJsApiOrbitapi>().handingOut<KJsApiUploadFileTask>();
    // clang-format on
    return list;
}

const MemberList& KJsApiOrbitapi::members()
{
    // clang-format off
    static const MemberList list {
        // member                 category                answer        parameters
        unbuilt(u"commonRequest", Category::CloudRequest, Type::Object, { Type::JsValue, Type::Object }),
    };
    // clang-format on
    return list;
}

const MemberList& KJsApiUploadFileTask::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member           category              answer
        unbuilt(u"start",   Category::CloudWrite, Type::JsValue),
        unbuilt(u"cancel",  Category::CloudWrite, Type::JsValue),
        unbuilt(u"restart", Category::CloudWrite, Type::JsValue),
    }.withEvents<KJsApiUploadFileTask>();
    // clang-format on
    return list;
}

Reply KJsApiCloudDoc::orbitapi(Call& call)
{
    return call.handOutKept(m_orbitapi, KJsApiOrbitapi::ScriptName);
}
