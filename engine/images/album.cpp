#include "album.h"

#include "pdf/copywriter.h"
#include "pdf/foreign.h"
#include "samples.h"
#include "system/lines.h"
#include "system/progress.h"

#include <cmath>
#include <cstdio>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QUtil.hh>

namespace engine {

namespace {

const char *spaceOf(int components)
{
    return components == 1 ? "/DeviceGray" : components == 3 ? "/DeviceRGB" : "/DeviceCMYK";
}

// The bytes as they lie in the document, decrypted.
class OwnBytes : public QPDFObjectHandle::StreamDataProvider
{
public:
    explicit OwnBytes(const QPDFObjectHandle &image)
        : m_image(image)
    {
    }

    void provideStreamData(QPDFObjGen const &, Pipeline *pipeline) override
    {
        m_image.pipeStreamData(pipeline, 0, qpdf_dl_none, true);
    }

private:
    QPDFObjectHandle m_image;
};

// Made when they are written, so that there is one image's in memory at a time.
class PlainSamples : public QPDFObjectHandle::StreamDataProvider
{
public:
    PlainSamples(const QPDFObjectHandle &image, const ImageFacts &facts, int &object)
        : m_image(image)
        , m_facts(facts)
        , m_object(object)
    {
    }

    void provideStreamData(QPDFObjGen const &, Pipeline *pipeline) override
    {
        const auto samples = plainSamplesOf(m_image, m_facts);
        if (samples) {
            pipeline->write(reinterpret_cast<const unsigned char *>(samples->data()),
                            samples->size());
        } else {
            m_object = 0;
        }
        pipeline->finish();
    }

private:
    QPDFObjectHandle m_image;
    const ImageFacts &m_facts;
    int &m_object;
};

class Album
{
public:
    explicit Album(QPDF &document)
        : m_document(document)
    {
        m_album.emptyPDF();
    }

    /// The object's number is put to 0 if the image turns out to be unreadable.
    void add(const SurveyedImage &image, int &object)
    {
        QPDFObjectHandle stream = QPDFObjectHandle::newStream(&m_album);
        fill(stream, image, object);
        m_album.addPage(pageFor(image, stream), false);
    }

    void write(int file) { writeCopy(m_album, file, {}); }

private:
    void fill(QPDFObjectHandle stream, const SurveyedImage &image, int &object)
    {
        const ImageFacts &facts = image.facts;
        QPDFObjectHandle original = m_document.getObject(image.object, 0);
        QPDFObjectHandle entries = original.getDict();
        const bool own = facts.kind == ImageKind::Bilevel || (facts.bits == 8 && !facts.indexed);
        const int components = facts.kind == ImageKind::Bilevel ? 1 : facts.components;
        std::ostringstream dictionary;
        dictionary << "<< /Type /XObject /Subtype /Image /Width " << facts.width << " /Height "
                   << facts.height << " /BitsPerComponent " << (own ? facts.bits : 8)
                   << " /ColorSpace " << spaceOf(components) << " >>";
        stream.replaceDict(QPDFObjectHandle::parse(dictionary.str()));
        const QPDFObjectHandle none = QPDFObjectHandle::newNull();
        if (own) {
            stream.replaceStreamData(std::make_shared<OwnBytes>(original),
                                     broughtInto(m_album, entries.getKey("/Filter")),
                                     broughtInto(m_album, entries.getKey("/DecodeParms")));
        } else {
            stream.replaceStreamData(std::make_shared<PlainSamples>(original, facts, object), none,
                                     none);
        }
    }

    QPDFObjectHandle pageFor(const SurveyedImage &image, const QPDFObjectHandle &stream)
    {
        const std::string width = QUtil::double_to_string(image.pageWidth(), 4);
        const std::string height = QUtil::double_to_string(image.pageHeight(), 4);
        QPDFObjectHandle page =
            QPDFObjectHandle::parse("<< /Type /Page /MediaBox [0 0 " + width + " " + height +
                                    "] /Resources << /XObject << >> >> >>");
        page.getKey("/Resources").getKey("/XObject").replaceKey("/I", stream);
        page.replaceKey("/Contents", QPDFObjectHandle::newStream(
                                         &m_album, width + " 0 0 " + height + " 0 0 cm /I Do"));
        return m_album.makeIndirectObject(page);
    }

    QPDF &m_document;
    QPDF m_album;
};

bool isInAlbum(Treatment treatment)
{
    return treatment == Treatment::Ghostscript || treatment == Treatment::Pixels;
}

std::string lineOf(const AlbumPage &page)
{
    char line[64];
    const int size = std::snprintf(line, sizeof line, "%d %.17g\n", page.object, page.dpi);
    return {line, std::size_t(size)};
}

std::optional<AlbumPage> pageOf(const std::string &line)
{
    AlbumPage page;
    const int read = std::sscanf(line.c_str(), "%d %lf", &page.object, &page.dpi);
    if (read != 2 || page.object < 0 || !(page.dpi > 0) || !std::isfinite(page.dpi) ||
        lineOf(page) != line + '\n')
        return {};
    return page;
}

} // namespace

AlbumIndex writeAlbum(QPDF &document, const std::vector<SurveyedImage> &images,
                      const ImageOptions &options, int file)
{
    std::vector<const SurveyedImage *> shown;
    AlbumIndex index;
    for (const SurveyedImage &image : images) {
        if (!isInAlbum(treatmentOf(image, options)))
            continue;
        shown.push_back(&image);
        index.push_back({image.object, image.dpi});
    }
    if (index.empty())
        return index;
    Album album(document);
    for (std::size_t page = 0; page < shown.size(); ++page) {
        album.add(*shown[page], index[page].object);
        reportProgress();
    }
    album.write(file);
    return index;
}

std::string linesOf(const AlbumIndex &index)
{
    std::string lines;
    for (const AlbumPage &page : index)
        lines += lineOf(page);
    return lines;
}

std::optional<AlbumIndex> albumIndexOf(const std::string &lines)
{
    return readLines(lines, pageOf);
}

} // namespace engine
