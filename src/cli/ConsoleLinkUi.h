#pragma once

#include "cli/ExitCode.h"
#include "core/link/LinkUi.h"

#include <functional>

namespace velora {
struct LinkState;
}

namespace velora::cli {

// The link's user interface for a console: nobody is there to answer a modal question, so a
// link failure is answered Cancel and every message becomes one line for the session to print.
// The kind of failure (and with it the exit code) follows from which message it is.
class ConsoleLinkUi : public LinkUi {
public:
    using FailureHandler = std::function<void(ExitCode, const QString& line)>;
    using NoticeHandler = std::function<void(const QString& line)>;

    explicit ConsoleLinkUi(const LinkState& state) : state_(state) {}

    void setFailureHandler(FailureHandler handler) { failure_ = std::move(handler); }
    void setNoticeHandler(NoticeHandler handler) { notice_ = std::move(handler); }

    // A message box text on one line: line breaks and blank lines become single spaces.
    [[nodiscard]] static QString oneLine(const QString& text);

    void EnableControls(bool /*enable*/) override {}
    void DisableTransferButtons() override {}
    void disableConsole() override {}
    void showError(const QString& text, const QString& caption) override;
    [[nodiscard]] bool askRetry(const QString& text, const QString& caption) override;
    void showNotice(const QString& text, const QString& caption) override;
    void setComText(int /*index*/, const QString& /*text*/) override {}
    void showBusyDialog() override {}
    void hideBusyDialog() override {}
    void showRealTimeMonitorOff() override {}
    void setWaveReadingShown(bool /*shown*/) override {}
    [[nodiscard]] bool waveReadingShown() const override { return false; }
    void enableWavePanel() override {}
    void showWaveProgress(const QString& /*label*/, const QString& /*marks*/) override {}
    void setWaveCancelEnabled(bool /*enable*/) override {}
    void setClock(const QDateTime& /*now*/) override {}
    void setComIndicator(bool /*live*/) override {}

private:
    void fail(ExitCode code, const QString& text);

    const LinkState& state_;
    FailureHandler failure_;
    NoticeHandler notice_;
};

}  // namespace velora::cli
