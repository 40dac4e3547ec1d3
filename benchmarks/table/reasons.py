"""What holds lines back that miss what is due, by the name of their row and their number in it."""

from __future__ import annotations

ALLOCATING = "by callgrind {share} of the instructions allocate and free memory"
BOX = "by callgrind no part takes above 7 of 100: numbers are read, formatted and kept as texts many times"
PACKING = "packing takes {time} of a processor on both sides, on two at a time here"

REASONS = {
    ("lz77", 0): PACKING.format(time="3.6 s") + "; rounds of four goes told 0.55 to 1.13, the disk's part in them",
    ("jpeg", 0): PACKING.format(time="0.6 s"),
    ("jpeg2000", 0): "OpenJPEG packs in as many threads as there are processors on both sides: 15.5 s of a processor in 8.5 s",
    ("png", 0): "filtering and packing take 5 s of a processor on both sides, on two at a time here, which reading shares",
    ("reduced", 0): "one thread reads and averages, 1.5 s of a processor; with 64 MB of cache it was 1.07, in 180 MB",
    ("mosaic", 1): "half a second of a processor; by callgrind it goes to opening files and to coordinate systems, hardly to pixels",
    ("methods", 2): "most of the image is holes then: by callgrind it goes to comparing values with their mask",
    ("services", 0): ALLOCATING.format(share="a third"),
    ("services", 1): "the rows are made anew at each visit, 22 us a row",
    ("services", 2): "rounds differ by more than what is wanted",
    ("metadata", 0): "a new image is parsed twice, for its help block and for its records; " + ALLOCATING.format(share="a quarter"),
    ("catalogue", 0): "the raster library builds the system anew for each file, which is nearly all of the work",
    ("catalogue", 2): "each start reads all files; nothing of them is kept on disk",
    ("boxes", 0): BOX,
    ("boxes", 1): BOX,
    ("boxes", 2): BOX,
    ("owslib", 0): "a tenth would be less than libxml2 alone takes to parse the answer",
    ("coverages", 1): "tiles are asked for four at a time, and servers and clients share two processors",
    ("coverages", 2): "the same pixels of the same server are more than half of what the driver takes",
    ("ranges", 0): "unpacking takes 0.26 s of a processor on both sides, and client and server share two",
}
