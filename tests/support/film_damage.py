"""Damages whole AVI films in the ways that people meet. Each kind is a function of a film and a seeded chance that
answers parts: stretches of the original, as (begin, end), and bytes in between. The same seed gives the same bytes.
Offsets and sizes are in bytes."""

import struct

SECTOR = 4096
CLUSTER = 32768


class Film:
    """The chunks of an undamaged film without OpenDML, by a plain walk."""

    def __init__(self, data):
        self.data = data
        self.chunks = []  # of the media: (offset of its header, code, size of its payload)
        self.stream_headers = []  # offsets of the chunks "strh"
        self.main_header = self.media = self.index = 0  # offsets of "avih", of the media's list and of "idx1"
        self.index_end = 0
        self._walk(12, len(data), False)

    def _walk(self, at, end, in_media):
        while at + 8 <= end:
            code, size = struct.unpack_from("<4sI", self.data, at)
            after = min(end, at + 8 + size)
            if code == b"LIST":
                kind = self.data[at + 8 : at + 12]
                if kind == b"movi":
                    self.media = at
                if kind in (b"hdrl", b"strl", b"movi", b"rec "):
                    self._walk(at + 12, after, in_media or kind == b"movi")
            elif in_media:
                self.chunks.append((at, code, size))
            elif code == b"strh":
                self.stream_headers.append(at)
            elif code == b"avih":
                self.main_header = at
            elif code == b"idx1":
                self.index, self.index_end = at, after
            at = after + size % 2

    @property
    def media_begin(self):
        return self.chunks[0][0]

    @property
    def media_end(self):
        return self.index


def edited(film, edits, end=None):
    """The film with stretches replaced: `edits` are (begin, end, bytes). Of two that overlap the first one counts."""
    parts, at = [], 0
    end = len(film.data) if end is None else end
    for begin, stop, put in sorted(edits, key=lambda edit: edit[0]):
        if begin < at or stop > end:
            continue
        parts += [(at, begin), put]
        at = stop
    return parts + [(at, end)]


def places(film, chance, count, size):
    """Where stretches of this size may begin within the media, apart from each other; rising."""
    found = []
    while len(found) < count:
        place = chance.randrange(film.media_begin + 1000, film.media_end - size - 1000)
        if all(abs(place - other) > size + 100 for other in found):
            found.append(place)
    return sorted(found)


def sectors(film, chance, share, make):
    all_sectors = range(film.media_begin // SECTOR + 1, film.media_end // SECTOR)
    chosen = chance.sample(all_sectors, max(2, int(len(all_sectors) * share)))
    return [(sector * SECTOR, (sector + 1) * SECTOR, make(SECTOR)) for sector in chosen]


def inner_chunks(film, chance, count):
    return chance.sample(film.chunks[3:-3], count)


def no_index(film):
    return [(film.index, film.index_end, b"")]


def number(value):
    return struct.pack("<I", value & 0xFFFFFFFF)


def wrong_sizes(film, chance, count):
    def wrong(size):
        return number(chance.choice((0, size // 3, size + chance.randrange(5, 4000), chance.getrandbits(32))))

    return [(at + 4, at + 8, wrong(size)) for at, _, size in inner_chunks(film, chance, count)]


def cut(film, chance, other):
    size = film.media_end - film.media_begin
    return [(0, film.media_begin + int(size * chance.uniform(0.55, 0.85)))]


def unfinished(film, chance, other):
    """Lengths never set, no index, and a tail of zeros that the camera had reserved."""
    media = [(film.media + 4, film.media + 8, bytes(4)), (4, 8, bytes(4))]
    main = [(film.main_header + 24, film.main_header + 28, bytes(4))]
    lengths = [(header + 40, header + 44, bytes(4)) for header in film.stream_headers]
    return edited(film, media + main + lengths, film.index) + [bytes(20 * SECTOR)]


def index_lost(film, chance, other):
    return edited(film, no_index(film))


def index_wrong(film, chance, other):
    return edited(film, [(film.index + 8, film.index_end, chance.randbytes(film.index_end - film.index - 8))])


def sectors_zeroed(film, chance, other):
    return edited(film, sectors(film, chance, 0.015, bytes))


def sectors_random(film, chance, other):
    return edited(film, sectors(film, chance, 0.015, chance.randbytes))


def bytes_missing(film, chance, other):
    size = chance.randrange(3001, 15000, 2)
    return edited(film, [(place, place + size, b"") for place in places(film, chance, 3, size)])


def bytes_inserted(film, chance, other):
    put = [chance.randbytes(chance.randrange(1001, 9000, 2)) for _ in range(3)]
    return edited(film, [(at, at, some) for at, some in zip(places(film, chance, 3, 9), put)])


def sizes_wrong(film, chance, other):
    return edited(film, wrong_sizes(film, chance, 10))


def codes_wrong(film, chance, other):
    return edited(film, [(at, at + 4, chance.randbytes(4)) for at, _, _ in inner_chunks(film, chance, 10)])


def headers_lost(film, chance, other):
    end = min(SECTOR, film.media)
    return edited(film, [(0, end, bytes(end))])


def span_doubled(film, chance, other):
    begin = places(film, chance, 1, 30000)[0]
    return [(0, begin + 30000), (begin, len(film.data))]


def clusters_shuffled(film, chance, other):
    count = len(film.data) // CLUSTER
    order = list(range(count))
    chosen = chance.sample(range(1, count), min(6, count - 1))
    for to, source in zip(chosen, chosen[1:] + chosen[:1]):
        order[to] = source
    return [(number * CLUSTER, (number + 1) * CLUSTER) for number in order] + [(count * CLUSTER, len(film.data))]


def other_film_behind(film, chance, other):
    middle, others = film.chunks[len(film.chunks) // 2], other.chunks[len(other.chunks) // 2]
    return [(0, middle[0] + 40), other.data[others[0] - 40 :]]


def everything(film, chance, other):
    place = places(film, chance, 1, 2001)[0]
    edits = no_index(film) + wrong_sizes(film, chance, 4) + sectors(film, chance, 0.008, chance.randbytes)
    end = film.media_begin + int((film.media_end - film.media_begin) * 0.9)
    return edited(film, edits + [(place, place + 2001, b"")], end)


KINDS = {
    kind.__name__: kind
    for kind in (
        cut,
        unfinished,
        index_lost,
        index_wrong,
        sectors_zeroed,
        sectors_random,
        bytes_missing,
        bytes_inserted,
        sizes_wrong,
        codes_wrong,
        headers_lost,
        span_doubled,
        clusters_shuffled,
        other_film_behind,
        everything,
    )
}


def damaged(film, kind, chance, other):
    """The damaged bytes, and the share of the film's chunks whose payloads are there in one piece."""
    data, kept = b"", []
    for part in KINDS[kind](film, chance, other):
        if isinstance(part, tuple):
            begin, end = part
            joins = kept and kept[-1][1] == begin and kept[-1][2] == len(data)
            data += film.data[begin:end]
            kept.append((kept.pop()[0] if joins else begin, end, len(data)))
        else:
            data += part
    whole = sum(any(begin <= at + 8 and at + 8 + size <= end for begin, end, _ in kept) for at, _, size in film.chunks)
    return data, whole / len(film.chunks)
