// Methods of the suite's web widgets that pages call by name.
#pragma once

#include "framework/request.h"
#include "suite/kjsapiwebwidget.h"
#include "webui/guarded.h"

#include <QMetaMethod>

namespace jsapi {

inline constexpr Failure WebWidgetHasGone { ErrorCode::OperationFailed, "empty webwidget", true };
inline constexpr Failure NoGeneralMethod = WrongParameters.rejected();

struct GeneralCall {
    QString funcName;
    QVariant funcParam;
    static constexpr auto fields()
    {
        return std::tuple(required("funcName", &GeneralCall::funcName,
                              "an invokable method of the web widget that takes and returns a value",
                              WrongParameters, WrongParameters),
            optional("funcParam", &GeneralCall::funcParam, "what it is called with"));
    }
};

/// The method of that name which takes one `const QVariant&` and returns a QVariant; invalid when there is none. No other
/// method of a widget's is a page's to call.
QMetaMethod findGeneralMethod(const KJsApiWebWidget& widget, const QString& name);

/// A call that is made from the event loop. [GUI thread]
class KGeneralMethodRequest final : public KJsRequestFor<QVariant> {
    Q_OBJECT

public:
    static Answer<Promise<QVariant>> start(
        const JSContextEnv& page, KJsApiWebWidget& widget, const GeneralCall& call);

private:
    Guarded<KJsApiWebWidget> m_widget;
    GeneralCall m_call;

public Q_SLOTS:
    // For the event loop.
    void invoke();
};

} // namespace jsapi
