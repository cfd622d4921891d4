#include "XmlFormat.h"

#include "Output.h"

#include <VokitExtras/VolWriter>

using vo::VolWriter;

void XmlFormat::entry(const vo::VolFile &file, const vo::VolRow & /*row*/)
{
    start(file.header());
    VolWriter(m_output.device()).write(file.entry());
    m_output.add({});
}

void XmlFormat::endFile(const vo::VolFile &file)
{
    start(file.header());
    GapWarnings::endFile(file);
}

void XmlFormat::end()
{
    start({}); // none of the files could be read
    VolWriter(m_output.device()).writeEnd();
}

// With what the first file says of itself.
void XmlFormat::start(const vo::VolHeader &header)
{
    if (!m_isStarted)
        VolWriter(m_output.device()).writeStart(header);
    m_isStarted = true;
}
