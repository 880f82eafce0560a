#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <utility>

class QSettings;

namespace velora {

struct ConnectionMemory;
struct Global;
struct WindowLayout;
struct WaveMonSettings;

// The program's settings in the per-user store, as texts under the application name "Halvern
// Electronics Velora" in the groups "COMSetting", "Language" and "WaveMonSettings". Reading is
// lenient: a key that is missing or holds something that is not a valid value for it yields the
// key's default. Everything is written together, and only at an orderly end of the program.
class SettingsStore {
public:
    // The user's store: ~/.config/Halvern Electronics Velora.conf on Linux, the registry key
    // HKEY_CURRENT_USER\Software\Halvern Electronics Velora on Windows.
    SettingsStore() = default;
    // One ini file per application name in directory (a store that touches nothing of the user's).
    explicit SettingsStore(QString iniDirectory) : iniDirectory_(std::move(iniDirectory)) {}

    // "COMSetting" and "Language" into the link state and the options (main window load).
    void loadComAndLanguage(Global& global) const;
    // "RetryTime", the polling period in ms (status bar load).
    [[nodiscard]] int loadRetryTime() const;
    // The wave monitor's group (wave monitor load).
    void loadWaveMon(WaveMonSettings& wave) const;
    // The group "Connection": the chosen device and the remembered adapter.
    void loadConnection(ConnectionMemory& memory) const;
    // Every setting, from the shared state.
    void saveAll(const Global& global) const;
    // The windows' places at the last orderly end; nothing when none was kept or it is damaged.
    [[nodiscard]] std::optional<WindowLayout> loadLayout() const;
    // Written beside saveAll, at the same orderly end.
    void saveLayout(const WindowLayout& layout) const;
    // Tells the sibling program not to skip its start screen: "False" under its own "SkipFg".
    void clearSiblingSkipFlag() const;

    // Where the settings live (a file name or a registry path).
    [[nodiscard]] QString location() const;

    // "True"/"False" in any case, or a number (non-zero is true).
    [[nodiscard]] static std::optional<bool> readFlag(const QString& text);
    // A decimal number, rounded to a whole number with halves to even (beyond the 32-bit range:
    // the nearer end of it).
    [[nodiscard]] static std::optional<int> readInteger(const QString& text);

private:
    [[nodiscard]] std::unique_ptr<QSettings> open(const QString& application) const;

    QString iniDirectory_;
};

}  // namespace velora
