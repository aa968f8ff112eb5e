// Windows of the suite with a page at an address, and what is passed along to the pages of views.
#pragma once

#include "framework/arguments.h"

#include <QUrl>

namespace jsapi {

/// What whoever opens a window passes along to its pages.
inline constexpr char ParamExtraDoc[] = "an object: what `Utils.getParamExtra` returns to the window's pages";

struct InnerPageOptions {
    std::string url;
    QString title;
    std::int32_t width = 1024;
    std::int32_t height = 768;
    QVariantMap paramExtra;
    static constexpr auto fields()
    {
        using Self = InnerPageOptions;
        return strictly(std::tuple(required("url", &Self::url, "the address: `https`, `http`, or `nova`"),
            optional("title", &Self::title, "the title of the window until the page has one"),
            optional("width", &Self::width, "of the page, in CSS pixels"),
            optional("height", &Self::height, "of the page, in CSS pixels"),
            optional("paramExtra", &Self::paramExtra, ParamExtraDoc)));
    }
};

inline constexpr Failure NoInnerPage { ErrorCode::OperationFailed, "create web widget fail!" };

/// Opens a window with a page at this address. Returns the identifier of its view; refuses with NotPermitted,
/// TooManyLaunches, and NoInnerPage where the suite shows no pages. [GUI thread]
Answer<QString> openInnerPage(const JSContextEnv& page, const QUrl& address, const InnerPageOptions& options);

} // namespace jsapi
