#include "DatabaseConnection.h"

#include <QStringEncoder>

void Utf8Binds::encode(const QStringList& texts, int marks)
{
    qsizetype space = 0;
    for (int i = 0; i < marks && i < texts.size(); ++i)
        space += texts.at(i).size() * 3 + 1; // the most UTF-8 a UTF-16 unit takes
    if (m_buffer.size() < space)
        m_buffer.resize(space);
    m_values.resize(marks);
    m_lengths.resize(marks);
    QStringEncoder utf8(QStringEncoder::Utf8);
    char* out = m_buffer.data();
    for (int i = 0; i < marks; ++i) {
        if (i >= texts.size()) {
            m_values[i] = nullptr;
            m_lengths[i] = 0;
            continue;
        }
        char* end = utf8.appendToBuffer(out, texts.at(i));
        m_lengths[i] = int(end - out);
        *end = '\0';
        m_values[i] = out;
        out = end + 1;
    }
}
