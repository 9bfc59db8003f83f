#include "MensajesRegistrados.h"

#include <QCoreApplication>

namespace {

class SinPantalla : public UiPort
{
public:
    int messageBox(const QString&, int style, const QString&) override
    {
        return (style & 7) == Msg::YesNo ? Msg::No : Msg::Ok;
    }
    void showModal(Controller&) override {}
    void showModeless(Controller&) override {}
    void yield() override { QCoreApplication::processEvents(); }
    QString chooseFolder(const QString&) override { return {}; }
    QString chooseOpenFile(const QString&, const QString&, const QString&) override { return {}; }
    QString chooseSaveFile(const QString&, const QString&, const QString&) override { return {}; }
    bool openDocument(const QString&) override { return false; }
    void setBusy(bool) override {}
    void endProgram() override {}
};

} // namespace

UiPort* PuertoSinPantalla()
{
    static SinPantalla port;
    return &port;
}

MensajesRegistrados::MensajesRegistrados() : m_previo(&ui())
{
    setUi(this);
}

MensajesRegistrados::~MensajesRegistrados()
{
    setUi(m_previo);
}

QStringList MensajesRegistrados::Tomar()
{
    QStringList out;
    out.swap(m_textos);
    return out;
}

int MensajesRegistrados::messageBox(const QString& text, int style, const QString&)
{
    m_textos
        << QString(text).replace(QStringLiteral("\r\n"), QStringLiteral(" ")).replace(u'\n', u' ');
    return (style & 7) == Msg::YesNo ? Msg::No : Msg::Ok;
}

void MensajesRegistrados::showModal(Controller& window)
{
    m_previo->showModal(window);
}

void MensajesRegistrados::showModeless(Controller& window)
{
    m_previo->showModeless(window);
}

void MensajesRegistrados::yield()
{
    m_previo->yield();
}

QString MensajesRegistrados::chooseFolder(const QString& title)
{
    return m_previo->chooseFolder(title);
}

QString MensajesRegistrados::chooseOpenFile(const QString& title, const QString& filter,
                                            const QString& folder)
{
    return m_previo->chooseOpenFile(title, filter, folder);
}

QString MensajesRegistrados::chooseSaveFile(const QString& title, const QString& filter,
                                            const QString& suggested)
{
    return m_previo->chooseSaveFile(title, filter, suggested);
}

bool MensajesRegistrados::openDocument(const QString& path)
{
    return m_previo->openDocument(path);
}

void MensajesRegistrados::setBusy(bool busy)
{
    m_previo->setBusy(busy);
}

void MensajesRegistrados::endProgram()
{
    m_previo->endProgram();
}
