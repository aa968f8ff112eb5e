// The kinds of web widgets that pages open.
#pragma once

#include "framework/stayloaded.h"
#include "suite/kjsapiwebwidget.h"
#include "suite/kjsapiwebwidgetfactory.h"

#include <QPointer>

/// A window without a frame.
class KJsApiDialogWebWidget final : public KJsApiWebWidget {
public:
    KJsApiDialogWebWidget(const QString& viewId, QWidget* parent);
};

/// A window without a frame that hides when another one is activated, if the suite has that.
class KJsApiPopupWebWidget final : public KJsApiWebWidget {
public:
    KJsApiPopupWebWidget(const QString& viewId, QWidget* parent);

private:
    void initNativeAttributes() override;
    bool event(QEvent* event) override;

    bool m_hidesItself = false;
};

/// A window with a companion, which closes with it. No class for the factory.
class KJsApiTabWebWidget final : public KJsApiWebWidget {
public:
    /// `companion` may be null.
    KJsApiTabWebWidget(const QString& viewId, QWidget* companion);

private:
    void onClose() override;

    QPointer<QWidget> m_companion;
};

/// The suite's web widget as it is.
class TestWebWidget final : public KJsApiWebWidget {
public:
    TestWebWidget(const QString& viewId, QWidget* parent);
};

/// Has the suite's factory make a T while the library is loaded; from the first T on it stays loaded, since the suite owns
/// that and it has its code here. Meant for static objects.
template <typename T> class KJsApiWebWidgetFactoryItem final : public KJsApiWebWidgetFactoryItemBase {
public:
    explicit KJsApiWebWidgetFactoryItem(const QString& name)
        : KJsApiWebWidgetFactoryItemBase(name)
    {
        KJsApiWebWidgetFactory::registerWidget(className(), this);
    }
    ~KJsApiWebWidgetFactoryItem() override { KJsApiWebWidgetFactory::unregisterWidget(className(), this); }

    KJsApiWebWidget* create(const QString& viewId, QWidget* parent) override
    {
        stayLoaded();
        return new T(viewId, parent);
    }
};
