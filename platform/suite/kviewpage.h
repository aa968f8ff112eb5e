// Which page a view begins with.
#pragma once

#include <QString>
#include <QUrl>

namespace kviewpage {
/// Has the view `viewId`, whose web widget is made after this call, begin with the page at `url`. False when the suite shows
/// no page there: then no web widget is made. [GUI thread]
bool choose(const QString& viewId, const QUrl& url);
} // namespace kviewpage

/// What whoever opens a view passes along to its pages: a QVariantMap in a dynamic property of this name of the web widget,
/// which the suite may set as well as the library. Without the property it is empty.
inline constexpr char KWebWidgetParamExtraProperty[] = "jsapiwebwidget_paramExtra";
