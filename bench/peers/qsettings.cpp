// Qt's QSettings in INI format.
#include "peers.h"

#include <QSettings>

namespace {

class Ini final : public bench::Peer
{
public:
    explicit Ini(const std::string& folder)
        : m_settings(QString::fromStdString(folder + "/settings.ini"), QSettings::IniFormat)
    {
        for (int i = 1; i < bench::peerEntries; ++i) {
            m_settings.setValue(QStringLiteral("Display/Setting%1").arg(i, 6, 10, QLatin1Char('0')), i);
        }
        write(60);
    }

    /// Calls sync first, to see what other processes have written.
    int read() override
    {
        m_settings.sync();
        return m_settings.value(m_frames).toInt();
    }

    bool write(int number) override
    {
        m_settings.setValue(m_frames, number);
        m_settings.sync();
        return m_settings.status() == QSettings::NoError;
    }

private:
    QSettings m_settings;
    const QString m_frames = QStringLiteral("Display/Frames");
};

} // namespace

std::unique_ptr<bench::Peer> bench::openQSettings(const std::string& folder)
{
    return std::make_unique<Ini>(folder);
}
