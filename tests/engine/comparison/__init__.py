"""What tests/engine/compare is made of. From the bottom up:

    line        the window's default line, and changes to it
    tools       other programs: run within a bound of time and memory
    pictures    pages as drawn by poppler and mutool, held against each other by block
    texts       letters as found by pdftotext
    structure   what else there is in a document, counted by kind
    annotations, metadata, names: the kinds of it, which ask objects
    judgement   a copy held against its original: what is lost, added or broken
    runs        one file through one program, remembered where that is asked for
    report      rows and totals

example is a document with something of every kind, for the test.
"""
