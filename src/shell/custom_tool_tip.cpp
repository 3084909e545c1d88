#include "shell/custom_tool_tip.h"

#include "model/debug_log.h"

#include <QCursor>
#include <QEvent>
#include <QFontMetrics>
#include <QPalette>
#include <QStringList>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

#include <algorithm>

namespace orm {

namespace {

// White back, blue text: 0xffffff and 0xff0000 as 0x00BBGGRR.
void applyTipColours()
{
    QPalette p = QToolTip::palette();
    p.setColor(QPalette::ToolTipBase, QColor(255, 255, 255));
    p.setColor(QPalette::ToolTipText, QColor(0, 0, 255));
    QToolTip::setPalette(p);
}

}  // namespace

QString tipText(const QString& title, const QString& text)
{
    return title + QStringLiteral("\n\n") + text;
}

QString wrapTipLines(const QString& text, const QFontMetrics& metrics, int maxWidth)
{
    QStringList out;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.isEmpty()) {
            out << QString();
            continue;
        }
        QString current;
        for (const QString& word : words) {
            if (current.isEmpty()) {
                current = word;
                continue;
            }
            const QString joined = current + QLatin1Char(' ') + word;
            if (metrics.horizontalAdvance(joined) <= maxWidth) {
                current = joined;
            } else {
                out << current;
                current = word;
            }
        }
        out << current;
    }
    return out.join(QLatin1Char('\n'));
}

CustomToolTip::CustomToolTip(QObject* parent) : QObject(parent) {}

CustomToolTip::~CustomToolTip()
{
    dropTools();
}

int CustomToolTip::SetAutoPop(int milliseconds)
{
    return std::clamp(milliseconds, 0, 32767);
}

void CustomToolTip::dropTools()
{
    for (auto it = tools_.begin(); it != tools_.end(); ++it) {
        if (it->control) {
            it->control->removeEventFilter(this);
            disconnect(it->control, nullptr, this, nullptr);
        }
    }
    tools_.clear();
}

void CustomToolTip::DestroyToolTip()
{
    if (active_)
        QToolTip::hideText();
    dropTools();
    active_ = false;
}

void CustomToolTip::InitToolTips(QWidget* form, bool enabled, const QString& title,
                                 const QHash<QString, QString>& texts)
{
    trace(QStringLiteral("InitToolTips 1.0"));
    DestroyToolTip();
    if (!enabled)
        return;
    active_ = true;
    title_ = title;
    if (!form)
        return;
    const QList<QWidget*> children = form->findChildren<QWidget*>();
    for (QWidget* w : children) {
        const auto found = texts.constFind(w->objectName());
        if (found == texts.constEnd() || tools_.contains(w))
            continue;
        tools_.insert(w, Tool{w, found.value()});
        w->installEventFilter(this);
        // A control that goes away takes its registration with it.
        connect(w, &QObject::destroyed, this, [this](QObject* gone) { tools_.remove(gone); });
    }
}

void CustomToolTip::SetTip(QWidget* control, const QString& text)
{
    auto it = tools_.find(control);
    if (it != tools_.end())
        it->text = text;
}

void CustomToolTip::ShowTip(QWidget* control, const QString& text, int milliseconds)
{
    if (!active_)
        return;
    lastShown_ = text;
    lastMilliseconds_ = SetAutoPop(milliseconds);
    if (text.isEmpty()) {
        QToolTip::hideText();
        return;
    }
    applyTipColours();
    QString shown = wrapTipLines(text, QFontMetrics(QToolTip::font()), TipMaxWidth);
    // A help text that happens to look like markup is still shown as written.
    if (Qt::mightBeRichText(shown))
        shown = Qt::convertFromPlainText(shown, Qt::WhiteSpacePre);
    QToolTip::showText(QCursor::pos(), shown, control, {}, lastMilliseconds_);
    emit tipShown(text);
}

bool CustomToolTip::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::MouseMove && type != QEvent::Enter && type != QEvent::ToolTip)
        return QObject::eventFilter(watched, event);
    const auto it = tools_.constFind(watched);
    if (!active_ || it == tools_.constEnd() || !it->control)
        return QObject::eventFilter(watched, event);
    if (!it->text.isEmpty())
        ShowTip(it->control, tipText(title_, it->text), 15000);
    // Our tip replaces the widget's own.
    return type == QEvent::ToolTip && !it->text.isEmpty();
}

}  // namespace orm
