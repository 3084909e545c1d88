// The one hover help of a form. Each control with a help text is registered
// once; hovering it shows the product title, a blank line and the control's
// text, so a form with many long texts keeps a single tip.
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

class QFontMetrics;
class QWidget;

namespace orm {

class CustomToolTip : public QObject {
    Q_OBJECT
public:
    explicit CustomToolTip(QObject* parent = nullptr);
    ~CustomToolTip() override;

    // Drops any existing registration; when `enabled` is false nothing shows
    // afterwards. Otherwise registers every child of `form` whose objectName has
    // a text in `texts` (empty texts too) and installs the hover handling.
    void InitToolTips(QWidget* form, bool enabled, const QString& title,
                      const QHash<QString, QString>& texts);
    bool active() const { return active_; }
    int toolCount() const { return int(tools_.size()); }

    // Shows `text` (already in its final form, see tipText) for the control at
    // the cursor, for `milliseconds` clamped to 0..32767. An empty text hides
    // the tip. Nothing when inactive. The control's registered text stays.
    void ShowTip(QWidget* control, const QString& text, int milliseconds = 15000);
    // Changes a registered control's help text; unregistered controls are ignored.
    void SetTip(QWidget* control, const QString& text);
    void DestroyToolTip();

    // What the last ShowTip showed, and for how long.
    QString lastShown() const { return lastShown_; }
    int lastMilliseconds() const { return lastMilliseconds_; }

    static int SetAutoPop(int milliseconds);

signals:
    // Every tip actually put on screen.
    void tipShown(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Tool {
        QPointer<QWidget> control;
        QString text;
    };
    void dropTools();

    bool active_ = false;
    QString title_;
    QHash<QObject*, Tool> tools_;
    QString lastShown_;
    int lastMilliseconds_ = 0;
};

// Title, two line ends, text: the form of every shown tip.
QString tipText(const QString& title, const QString& text);

// Breaks lines between words so none is wider than `maxWidth` pixels; a word
// wider than that stands alone on its line. Existing line ends are kept.
QString wrapTipLines(const QString& text, const QFontMetrics& metrics, int maxWidth);

// The widest a tip may be, in pixels.
inline constexpr int TipMaxWidth = 150;

}  // namespace orm
