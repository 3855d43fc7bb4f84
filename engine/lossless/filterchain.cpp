#include "filterchain.h"

#include "pdf/streams.h"

#include <algorithm>

namespace engine {

namespace {

using Object = QPDFObjectHandle;

Object itemOf(Object oneOrMore, std::size_t index)
{
    if (oneOrMore.isArray())
        return int(index) < oneOrMore.getArrayNItems() ? oneOrMore.getArrayItem(int(index))
                                                       : Object::newNull();
    return index == 0 ? oneOrMore : Object::newNull();
}

// Some writers have an empty dictionary where there are none, which libqpdf takes for parameters.
Object parametersIn(Object oneOrMore, std::size_t index)
{
    Object parameters = itemOf(oneOrMore, index);
    return parameters.isDictionary() && parameters.getKeys().empty() ? Object::newNull()
                                                                     : parameters;
}

// One layer goes without an array.
Object filtersFor(const std::vector<Layer> &layers)
{
    if (layers.size() == 1)
        return Object::newName(layers[0].filter);
    Object names = Object::newArray();
    for (const Layer &layer : layers)
        names.appendItem(Object::newName(layer.filter));
    return layers.empty() ? Object::newNull() : names;
}

Object parametersFor(const std::vector<Layer> &layers)
{
    if (layers.size() == 1)
        return layers[0].parameters;
    Object all = Object::newArray();
    bool any = false;
    for (const Layer &layer : layers) {
        all.appendItem(layer.parameters);
        any = any || !Object(layer.parameters).isNull();
    }
    return any ? all : Object::newNull();
}

// LZW's own, which it takes to read the bytes.
Object withoutPredictor(Object parameters)
{
    if (!parameters.isDictionary() || !parameters.hasKey("/EarlyChange"))
        return Object::newNull();
    Object rest = Object::newDictionary();
    rest.replaceKey("/EarlyChange", parameters.getKey("/EarlyChange"));
    return rest;
}

// libqpdf decodes all filters of a stream or none. So the bytes below the outer filters are those
// of a stream that has only these, made for this purpose and not part of the document.
Object shortened(QPDF &document, Object stream, std::vector<Layer> layers)
{
    layers.back().parameters = withoutPredictor(layers.back().parameters);
    Object outer = Object::newStream(&document);
    outer.replaceStreamData(stream.getRawStreamData(), filtersFor(layers), parametersFor(layers));
    return outer;
}

} // namespace

std::vector<Layer> layersOf(Object stream)
{
    Object parameters = stream.getDict().getKey("/DecodeParms");
    std::vector<Layer> layers;
    for (const std::string &filter : filtersOf(stream))
        layers.push_back({filter, parametersIn(parameters, layers.size())});
    return layers;
}

std::size_t genericLayers(const std::vector<Layer> &layers)
{
    const auto end = std::find_if(layers.begin(), layers.end(),
                                  [](const Layer &layer) { return !isGeneric({layer.filter}); });
    return std::size_t(end - layers.begin());
}

std::optional<std::string> bytesBelow(QPDF &document, Object stream, std::size_t count)
{
    std::vector<Layer> layers = layersOf(stream);
    if (count > genericLayers(layers))
        return {};
    if (count == 0)
        return rawBytesOf(stream);
    layers.resize(count);
    return decodedBytesOf(shortened(document, stream, layers));
}

Object predictorOf(Object parameters)
{
    Object predictor =
        parameters.isDictionary() ? parameters.getKey("/Predictor") : Object::newNull();
    if (!predictor.isInteger() || predictor.getIntValue() <= 1)
        return Object::newNull();
    Object rest = parameters.shallowCopy();
    rest.removeKey("/EarlyChange");
    return rest;
}

void replaceBytes(Object stream, const std::string &bytes, const std::vector<Layer> &layers)
{
    stream.replaceStreamData(bytes, filtersFor(layers), parametersFor(layers));
}

std::size_t sizeOfEntries(const std::vector<Layer> &layers)
{
    const auto sizeOfEntry = [](const char *key, Object value) {
        return value.isNull() ? 0 : std::string(key).size() + value.unparseResolved().size() + 2;
    };
    return sizeOfEntry("/Filter", filtersFor(layers)) +
           sizeOfEntry("/DecodeParms", parametersFor(layers));
}

} // namespace engine
