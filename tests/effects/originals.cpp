#include "originals.h"

#include "support/files.h"
#include "support/tools.h"

#include <QRandomGenerator>
#include <QTemporaryFile>

namespace originals {

namespace {

// Numbers its objects from 1 in the order in which they are added.
class Pdf
{
public:
    void add(const QByteArray &object)
    {
        m_offsets.append(m_text.size());
        m_text += QByteArray::number(m_offsets.size()) + " 0 obj\n" + object + "\nendobj\n";
    }

    void addStream(const QByteArray &entries, const QByteArray &data)
    {
        add("<< " + entries + " /Length " + QByteArray::number(data.size()) + " >>\nstream\n" +
            data + "\nendstream");
    }

    // The first object must be the catalogue.
    QByteArray finished() const
    {
        const QByteArray size = QByteArray::number(m_offsets.size() + 1);
        QByteArray text = m_text + "xref\n0 " + size + "\n0000000000 65535 f \n";
        for (const qsizetype offset : m_offsets)
            text += QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n";
        return text + "trailer << /Size " + size + " /Root 1 0 R >>\nstartxref\n" +
               QByteArray::number(m_text.size()) + "\n%%EOF\n";
    }

private:
    QByteArray m_text = "%PDF-1.4\n";
    QList<qsizetype> m_offsets;
};

// Rises and falls slowly, without an edge; a little grain makes a photograph of it.
int shade(int place)
{
    return 28 + qAbs(place % 400 - 200);
}

// Squares of 64 pixels: a picture of one bit that looks the same at a quarter of its resolution.
QByteArray squares(int lineBytes, int lines)
{
    QByteArray data;
    data.reserve(lineBytes * lines);
    for (int line = 0; line < lines; ++line) {
        for (int i = 0; i < lineBytes; ++i)
            data.append((line / 64 + i / 8) % 2 == 0 ? '\0' : '\xff');
    }
    return data;
}

QByteArray samples(Motif motif, int pixelBytes, int lineBytes, int lines)
{
    QRandomGenerator random(1);
    QByteArray data;
    data.reserve(lineBytes * lines);
    for (int line = 0; line < lines; ++line) {
        for (int i = 0; i < lineBytes; ++i) {
            data.append(static_cast<char>(motif == Motif::noise
                                              ? random.bounded(256)
                                              : shade(line + i / pixelBytes) + random.bounded(8)));
        }
    }
    return data;
}

void addImage(Pdf &pdf, Motif motif, int size, const QByteArray &colourSpace, int components,
              int bits)
{
    const QByteArray width = QByteArray::number(size);
    const int lineBytes = size * components * bits / 8;
    const QByteArray data = motif == Motif::shades && bits == 1
                                ? squares(lineBytes, size)
                                : samples(motif, components, lineBytes, size);
    // Four bytes for one: a bilevel image keeps its stream if a copy's would be longer.
    pdf.addStream("/Type /XObject /Subtype /Image /Width " + width + " /Height " + width +
                      " /ColorSpace /" + colourSpace + " /BitsPerComponent " +
                      QByteArray::number(bits) + " /Filter [/ASCIIHexDecode /ASCIIHexDecode]",
                  data.toHex().toHex());
}

} // namespace

void writeImages(const QString &path, Motif motif)
{
    Pdf pdf;
    pdf.add("<< /Type /Catalog /Pages 2 0 R >>");
    pdf.add("<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
    pdf.add("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 288 432] /Contents 4 0 R /Resources"
            " << /XObject << /Colour 5 0 R /Gray 6 0 R /Mono 7 0 R >> >> >>");
    // Two inches, two inches, and four inches for the image that has only one bit for each pixel.
    pdf.addStream("", "q 144 0 0 144 0 288 cm /Colour Do Q q 144 0 0 144 144 288 cm /Gray Do Q"
                      " q 288 0 0 288 0 0 cm /Mono Do Q");
    addImage(pdf, motif, 2 * imageDpi, "DeviceRGB", 3, 8);
    addImage(pdf, motif, 2 * imageDpi, "DeviceGray", 1, 8);
    addImage(pdf, motif, 4 * imageDpi, "DeviceGray", 1, 1);
    write(path, pdf.finished());
}

// The copy must be larger than what the window takes for a failure even without its fonts, hence
// the many different words.
bool writeText(const QString &path)
{
    QTemporaryFile program;
    if (!program.open())
        return false;
    program.write("%!PS\n"
                  "1 srand\n"
                  "/page { findfont 8 scalefont setfont\n"
                  "  30 10 770 { 30 exch moveto 9 { rand 20 string cvs show ( ) show } repeat }"
                  " for } def\n"
                  "/NimbusSans-Regular page showpage /NimbusRoman-Regular page showpage\n");
    program.close();
    const tools::Result drawn =
        tools::run("gs", {"-q", "-dBATCH", "-dNOPAUSE", "-sDEVICE=pdfwrite", "-dSubsetFonts=false",
                          "-dEmbedAllFonts=true", "-sOutputFile=" + path, program.fileName()});
    // So large that a copy is smaller whatever is asked of it.
    return drawn.status == 0 &&
           tools::run("qpdf", {"--stream-data=uncompress", "--replace-input", path}).status == 0;
}

} // namespace originals
