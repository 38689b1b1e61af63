#include "Controls.h"

#include <tarn/ProgressBar.h>

TEST_CASE("ProgressBar: range and position are signed and wider than a word")
{
    const Hosted<ProgressBar> host(PROGRESS_CLASSW);
    const ProgressBar& bar = host.control;
    bar.setRange(-100000, 200000);
    CHECK((bar.getRange().iLow == -100000 && bar.getRange().iHigh == 200000));
    CHECK((bar.getMin() == -100000 && bar.getMax() == 200000));
    bar.setPos(150000);
    CHECK((bar.setPos(-5) == 150000 && bar.getPos() == -5));
}

TEST_CASE("ProgressBar: it is told to move while there is no end to see")
{
    struct Listener : Window {
        LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
        {
            return msg == PBM_SETMARQUEE ? (moving = wParam != 0, intervalMs = lParam, TRUE)
                                         : Window::onMessage(msg, wParam, lParam);
        }
        bool moving = false;
        LPARAM intervalMs = 0;
    } control;
    open(control);
    const ProgressBar bar(control.getWindowHandle());
    bar.setMarquee(true, 50);
    CHECK((control.moving && control.intervalMs == 50));
    bar.setMarquee(false);
    CHECK_FALSE(control.moving);
}
