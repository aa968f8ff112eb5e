// The suite's web widget: a browser view among the suite's widgets.
#pragma once

#include <QVariant>
#include <QWidget>
#include <memory>

class KJsApiWebWidgetPrivate;

/// A widget that shows one view. Where it is a window it is its own shell; otherwise its shell is the window that it lies
/// in, one of the suite's. [GUI thread] for all; throws nothing. Whoever is called back may destroy widget and shell.
///
/// A shell has these signals, a web widget that is its own shell as well. They are connected by name, so a window that has
/// some of them only is no error: the listeners of the others are not called.
///
///     sigHidden(), sigShown(), sigClosed()
///     sigWindowActiveChanged(bool)                    the window has become the active one, or is it no longer
///     sigResized(const QSize&, const QSize&)          the new size and the one before, in physical pixels
///
/// Classes derived from it are made by the library, so its size is a part of the contract: a QWidget and one pointer. It
/// overrides event() and nothing else of QWidget's.
class KJsApiWebWidget : public QWidget {
    Q_OBJECT

public:
    /// `viewId` names the view, which begins to load when the event loop runs: the constructor may be called from within
    /// a call of the page of another view.
    explicit KJsApiWebWidget(
        const QString& viewId, QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    ~KJsApiWebWidget() override;

    QString viewId() const;
    /// Whether popups hide when they are no longer active.
    bool getEnableAutoHide() const;

    /// To be called before show(): shows the window that the widget lies in.
    void beforeShow();
    /// Gives the keyboard focus to the page.
    void takeFocus();
    /// The page has finished loading.
    void pageReady();

    /// Whether the user may change the size of the window. Setters of the size work in any case.
    void setResizeable(bool resizeable);
    /// 0xAARRGGBB. False when it is not applied.
    bool setWindowBackgroundColor(unsigned argb);
    /// What is painted outside round corners.
    void setRoundFillColor(const QColor& color);
    void setDisableScrollBar(bool disable);
    void setDisableXScrollBar(bool disable);
    void setDisableYScrollBar(bool disable);

    // Where the window can be dragged by its content: in any of the areas, and in none of the black ones. In physical
    // pixels of the widget.
    void addDragArea(const QRect& area);
    void clearDragArea();
    void addBlackDragArea(const QRect& area);
    void clearBlackDragArea();
    /// Whether files may be dragged in from elsewhere: sigDragEnter is emitted then.
    void enableDragEnter(bool enable);

Q_SIGNALS:
    /// Local files are dragged in.
    void sigDragEnter(const QStringList& paths);
    /// Something of the suite's own, for the page.
    void sigWebviewEvent(const QVariant& value);

    // As a shell.
    void sigHidden();
    void sigShown();
    void sigClosed();
    void sigWindowActiveChanged(bool active);
    void sigResized(const QSize& size, const QSize& oldSize);

protected:
    bool event(QEvent* event) override;
    /// Called when the window system has a new window for this widget, and before it is shown.
    virtual void initNativeAttributes();
    /// Called when the widget, a window, has been closed.
    virtual void onClose();

private:
    friend class KJsApiWebWidgetPrivate;
    std::unique_ptr<KJsApiWebWidgetPrivate> d;
};
