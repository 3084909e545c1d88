// Xp_ProgressBar: the own-drawn progress control of the download dialog and of
// the message dialog's count-down.
#pragma once

#include <QString>
#include <QWidget>
#include <functional>

class QTimer;

namespace orm {

// The refusal texts of the range setters, shown under the title "Error".
inline constexpr const char* MinAboveMaxError = "Minimum can NOT be biger than maximum !";
inline constexpr const char* MinBelowZeroError = "Minimum can NOT be smaller then 0 !";
inline constexpr const char* MaxBelowMinError = "Maximum can NOT be smaller than minimum !";

// The text refusing a new Min (or Max) against the present range; empty when it is accepted.
QString progressMinError(int newMin, int max);
QString progressMaxError(int newMax, int min);

// Pixels of `innerWidth` filled at `value` in [min, max]; a value outside the range
// fills nothing or everything, an empty range fills nothing.
int progressFillWidth(int min, int max, int value, int innerWidth);

// Pixels the Auto animation moves its block on each timer tick.
inline constexpr int ProgressAutoStep = 2;

class ProgressBar : public QWidget {
    Q_OBJECT
public:
    enum Style { Continuous = 0, Blocks = 1 };
    enum Look { LookXp = 0, LookClassic = 1 };

    explicit ProgressBar(QWidget* parent = nullptr);

    int Min() const { return min_; }
    int Max() const { return max_; }
    int Value() const { return value_; }
    bool Auto() const { return auto_; }
    int Interval() const { return interval_; }
    int style() const { return style_; }
    int ProgressLook() const { return look_; }

    // Refused values leave the property as it was and report the text; false then.
    bool setMin(int v);
    bool setMax(int v);
    void setValue(int v);
    void setAuto(bool on);
    void setInterval(int ms);
    void setStyle(int s);
    void setProgressLook(int look);

    // Where refusals go; a message box titled "Error" when unset.
    void setErrorHandler(std::function<void(const QString&)> handler) { onError_ = std::move(handler); }

    // Inside the border.
    int innerWidth() const;
    int fillWidth() const { return progressFillWidth(min_, max_, value_, innerWidth()); }
    // The Auto block's left edge.
    int animationPosition() const { return animPos_; }
    QTimer* timer() const { return timer1_; }

public slots:
    // Timer1: moves the Auto block on, starting over past the right edge.
    void Timer1_Timer();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void refuse(const QString& text);
    void restartAnimation();

    int min_ = 0;
    int max_ = 100;
    int value_ = 0;
    bool auto_ = false;
    int interval_ = 50;
    int style_ = Blocks;
    int look_ = LookXp;
    int animPos_ = 0;
    QTimer* timer1_ = nullptr;
    std::function<void(const QString&)> onError_;
};

}  // namespace orm
