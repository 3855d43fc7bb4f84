"""A document with something of every kind that a copy can lose."""
import pikepdf
from pikepdf import Array, AttachedFileSpec, Dictionary, Name, OutlineItem, Pdf, String

XMP = b"""<?xpacket begin="" id="W5M0MpCehiHzreSzNTczkc9d"?><x:xmpmeta xmlns:x="adobe:ns:meta/">
<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"><rdf:Description rdf:about=""
 xmlns:dc="http://purl.org/dc/elements/1.1/"><dc:title><rdf:Alt><rdf:li xml:lang="x-default">A title
</rdf:li></rdf:Alt></dc:title></rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end="w"?>"""


def document():
    pdf = Pdf.new()
    _add_pages(pdf)
    _add_names(pdf)
    _add_annotations(pdf)
    _add_layers(pdf)
    _add_viewing(pdf)
    return pdf


def _add_pages(pdf):
    font = pdf.make_indirect(Dictionary(Type=Name.Font, Subtype=Name.Type1,
                                        BaseFont=Name.Helvetica))
    for number in (1, 2):
        page = pdf.add_blank_page(page_size=(300, 200))
        page.Resources = Dictionary(Font=Dictionary(F=font))
        page.Contents = pdf.make_stream(
            b"0.5 w 20 60 m 280 60 l S BT /F 24 Tf 20 100 Td (Page, number %d) Tj ET" % number)
        page.obj.CropBox = Array([10, 10, 290, 190])
    pdf.pages[1].obj.Rotate = 90
    pdf.pages[1].obj.UserUnit = 2
    pdf.pages[0].obj.Trans = Dictionary(S=Name.Dissolve)


def _add_names(pdf):
    first, second = (page.obj for page in pdf.pages)
    place = Array([second, Name.XYZ, 0, 100, 0])
    pdf.Root.Names = Dictionary(Dests=Dictionary(Names=Array([String("end"), place])))
    pdf.Root.PageLabels = Dictionary(Nums=Array([0, Dictionary(S=Name.r)]))
    with pdf.open_outline() as outline:
        outline.root.append(OutlineItem("A chapter", 1))
    bead = pdf.make_indirect(Dictionary(P=first, R=Array([20, 20, 100, 100])))
    bead.N = bead.V = bead
    thread = Dictionary(F=bead, I=Dictionary(Title=String("An article")))
    pdf.Root.Threads = Array([pdf.make_indirect(thread)])
    pdf.Root.OpenAction = place


def _add_annotations(pdf):
    box = Array([20, 20, 90, 40])
    script = Dictionary(S=Name.JavaScript, JS=String("app.beep()"))
    field = pdf.make_indirect(Dictionary(
        Type=Name.Annot, Subtype=Name.Widget, FT=Name.Tx, T=String("name"), V=String("Zoe"),
        Rect=box, AA=Dictionary(K=script)))
    link = Dictionary(Type=Name.Annot, Subtype=Name.Link, Rect=box, Dest=String("end"))
    note = Dictionary(Type=Name.Annot, Subtype=Name.Text, Rect=box, Contents=String("A note"))
    pdf.pages[0].obj.Annots = Array([pdf.make_indirect(link), pdf.make_indirect(note), field])
    pdf.Root.AcroForm = Dictionary(Fields=Array([field]), DA=String("/F 12 Tf"))
    attach(pdf, b"a,b")
    pdf.Root.Collection = Dictionary(View=Name.D)


def attach(pdf, data):
    pdf.attachments["data.csv"] = AttachedFileSpec(pdf, data, filename="data.csv")


def _add_layers(pdf):
    layer = pdf.make_indirect(Dictionary(Type=Name.OCG, Name=String("A layer")))
    pdf.Root.OCProperties = Dictionary(OCGs=Array([layer]), D=Dictionary(OFF=Array([layer])))
    stamp = pdf.make_stream(b"0 0 9 9 re f", Type=Name.XObject, Subtype=Name.Form,
                            BBox=Array([0, 0, 9, 9]), OC=layer)
    pdf.pages[0].Resources.XObject = Dictionary(X=stamp)


def _add_viewing(pdf):
    element = Dictionary(S=Name.Figure, Alt=String("A picture"))
    pdf.Root.StructTreeRoot = Dictionary(Type=Name.StructTreeRoot,
                                         K=Array([pdf.make_indirect(element)]))
    pdf.Root.OutputIntents = Array([Dictionary(
        S=Name.GTS_PDFX, OutputConditionIdentifier=String("FOGRA39"))])
    pdf.Root.ViewerPreferences = Dictionary(DisplayDocTitle=True)
    pdf.Root.Lang = String("en")
    pdf.Root.PageMode = Name.UseOutlines
    pdf.trailer.Info = pdf.make_indirect(Dictionary(Title=String("A title")))
    pdf.Root.Metadata = pdf.make_stream(XMP, Type=Name.Metadata, Subtype=Name.XML)


PROTECTION = pikepdf.Encryption(owner="secret", user="", R=4,
                                allow=pikepdf.Permissions(print_highres=False))
