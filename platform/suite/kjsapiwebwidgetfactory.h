// The suite's registry of web widgets' classes, and the windows that may be parents of web widgets.
#pragma once

#include <QString>

class KJsApiWebWidget;
class KJsApiWebWidgetFactoryItemBase;
class QWidget;

/// Makes web widgets by the name of their class. All but registering and taking back needs an application. [GUI thread]
class KJsApiWebWidgetFactory {
public:
    /// Registers an item, which is borrowed until it is taken back. A second one of the same name takes its place. Called
    /// while the library is loaded.
    static void registerWidget(const QString& className, KJsApiWebWidgetFactoryItemBase* item);
    /// Takes an item back: does nothing when that is not, or no longer, the class's. Called while the library is unloaded.
    static void unregisterWidget(const QString& className, KJsApiWebWidgetFactoryItemBase* item);
    static bool isClassRegistered(const QString& className);
    /// A new web widget of that class: a window, of which `parent` is the owner (may be null). The suite owns it. Null when
    /// none can be made, as for an unknown class or the identifier of a view that there is.
    static KJsApiWebWidget* createWidget(const QString& className, const QString& viewId, QWidget* parent);
};

/// Makes the web widgets of one class. Whoever derives from it registers the item. Its size is a part of the contract: a
/// virtual table and a QString.
class KJsApiWebWidgetFactoryItemBase {
public:
    explicit KJsApiWebWidgetFactoryItemBase(const QString& className);
    KJsApiWebWidgetFactoryItemBase(const KJsApiWebWidgetFactoryItemBase&) = delete;
    KJsApiWebWidgetFactoryItemBase& operator=(const KJsApiWebWidgetFactoryItemBase&) = delete;
    virtual ~KJsApiWebWidgetFactoryItemBase();

    const QString& className() const { return m_className; }
    /// A new web widget, which the caller owns.
    virtual KJsApiWebWidget* create(const QString& viewId, QWidget* parent) = 0;

private:
    QString m_className;
};

/// Windows offer themselves as parents in properties of the application object, with this prefix before the name of the
/// kind of parent, "MainWindow" as a rule. The value is a QVariantList of QWidget*; a window that goes takes itself out.
inline constexpr char KWebWidgetParentsProperty[] = "jsapiwebwidget_";
