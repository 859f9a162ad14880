#include "PxLogConsole.h"

#include "PxRigaLog.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <spdlog/details/os.h>
#include <spdlog/formatter.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <algorithm>
#include <atomic>

namespace {

// spdlog's levels carry ours: 0 error, 1 warning, 2 information, 3 detail.
spdlog::level::level_enum LivelloSpd(int livello)
{
    switch (livello) {
    case modRigaLog::LivelloErrore: return spdlog::level::err;
    case modRigaLog::LivelloAvviso: return spdlog::level::warn;
    case modRigaLog::LivelloInformazione: return spdlog::level::info;
    default: return spdlog::level::debug;
    }
}

int LivelloNostro(spdlog::level::level_enum livello)
{
    switch (livello) {
    case spdlog::level::critical:
    case spdlog::level::err: return modRigaLog::LivelloErrore;
    case spdlog::level::warn: return modRigaLog::LivelloAvviso;
    case spdlog::level::info: return modRigaLog::LivelloInformazione;
    default: return modRigaLog::LivelloDettaglio;
    }
}

// Writes each message in the shared log-line form, CR LF included.
class FormatoRigaLog final : public spdlog::formatter
{
public:
    void format(const spdlog::details::log_msg& msg, spdlog::memory_buf_t& dest) override
    {
        const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(msg.time.time_since_epoch()).count();
        const QTime ora = QDateTime::fromMSecsSinceEpoch(ms).time();
        const QString testo = QString::fromUtf8(msg.payload.data(), static_cast<qsizetype>(msg.payload.size()));
        const QByteArray riga = modRigaLog::Formatta(LivelloNostro(msg.level), ora, testo);
        dest.append(riga.constData(), riga.constData() + riga.size());
    }
    std::unique_ptr<spdlog::formatter> clone() const override { return std::make_unique<FormatoRigaLog>(); }
};

} // namespace

PxLogConsole::PxLogConsole() = default;

PxLogConsole::~PxLogConsole() { Chiudi(); }

QString PxLogConsole::File() const
{
    return QDir(Cartella).filePath(NomeApplicazione + QStringLiteral(".log"));
}

bool PxLogConsole::Apri()
{
    Chiudi();
    if (!Abilitato || Cartella.isEmpty() || !QDir().mkpath(Cartella))
        return false;
    try {
        static std::atomic<int> progressivo{0};
        auto sink = std::make_shared<spdlog::sinks::rotating_file_sink_mt>(
            QFile::encodeName(File()).toStdString(), static_cast<size_t>(std::max<qint64>(1024, DimensioneMassima)),
            static_cast<size_t>(std::clamp(NumeroFile, 0, 200000)));
        sink->set_formatter(std::make_unique<FormatoRigaLog>());
        mLogger = std::make_shared<spdlog::logger>("console-" + std::to_string(progressivo++), std::move(sink));
        mLogger->set_level(spdlog::level::trace);
        mLogger->flush_on(spdlog::level::trace);
    } catch (const spdlog::spdlog_ex&) {
        mLogger.reset();
    }
    return Aperto();
}

void PxLogConsole::Chiudi()
{
    if (mLogger)
        mLogger->flush();
    mLogger.reset();
}

void PxLogConsole::Scrivi(int livello, const QString& testo)
{
    if (!mLogger || !Abilitato)
        return;
    const QByteArray utf8 = testo.toUtf8();
    mLogger->log(LivelloSpd(livello), spdlog::string_view_t(utf8.constData(), static_cast<size_t>(utf8.size())));
}
