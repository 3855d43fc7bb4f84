"""What tests/engine/imagefuzz is made of. From the bottom up:

    pixels      pictures as arrays, and as the bytes of samples
    codecs      filters of streams that neither qpdf nor the Python library writes
    colours     colour spaces of all kinds
    filters     samples put through filters, alone and in chains
    masks       what hides a part of an image
    images      image objects with all this
    places      where and how images are shown
    documents   whole documents, and how they are broken
    trial       one document through corvgs, its copy held against it
"""
