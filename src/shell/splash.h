// frmSplash: the start-up picture. It fades in from clear while the program
// initialises and shows each start-up step in its status line.
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QWidget>

class QLabel;
class QTimer;

namespace orm {

inline constexpr int FadeInterval = 10;  // tmrFade, ms
inline constexpr int FadeStep = 4;

// The fade's count, apart from the window: from 0, 4 more each tick, 255 at the end.
class SplashFade {
public:
    void start() { Opacity = 0; running = true; }
    // One tmrFade firing: the alpha to apply (0..255); the last one stops the fade.
    int step();

    int Opacity = 0;
    bool running = false;
};

// The window's caption.
QString splashCaption();

class SplashWindow : public QWidget {
    Q_OBJECT
public:
    explicit SplashWindow(QWidget* parent = nullptr);

    // Centres, rounds and lifts the window, makes it clear and starts the fade in.
    void showSplash();
    // The status line, painted and on the screen at once, and the fade kept
    // to its pace: start-up yields only by painting.
    void setStatus(const QString& text);
    QString status() const;
    // Start-up step 21: back on top of the windows opened since.
    void liftToTop();
    // The last step of start-up, and the program's unload.
    void closeSplash();

    // The alpha applied last, 0 to 255.
    int appliedOpacity() const { return applied_; }
    bool fading() const { return fade_.running; }
    QTimer* fadeTimer() const { return tmrFade_; }
    static constexpr int CornerRadius = 24;

public slots:
    void tmrFade_Timer();

private:
    void applyOpacity(int alpha);
    bool isExposed() const;
    void paintNow();
    static constexpr int MaxExposeWaitMs = 500;

    SplashFade fade_;
    int applied_ = 0;
    QLabel* lblStatus_ = nullptr;
    QTimer* tmrFade_ = nullptr;
    QElapsedTimer fadeClock_;
};

}  // namespace orm
