#!/usr/bin/env python3
"""Packs examples/brochure/ into examples/brochure.idml: the same bytes for the same sources.

The format wants the part "mimetype" first and stored, so that a file's kind can be told from its first bytes.
"""
import pathlib
import zipfile

HERE = pathlib.Path(__file__).resolve().parent
EARLIEST = (1980, 1, 1, 0, 0, 0)  # The earliest date that the archive format knows.


def pack(folder: pathlib.Path, package: pathlib.Path) -> None:
    parts = sorted(path for path in folder.rglob("*") if path.is_file() and path.name != "mimetype")
    with zipfile.ZipFile(package, "w") as archive:
        for path in [folder / "mimetype", *parts]:
            entry = zipfile.ZipInfo(path.relative_to(folder).as_posix(), EARLIEST)
            entry.external_attr = 0o644 << 16
            entry.compress_type = zipfile.ZIP_STORED if path.name == "mimetype" else zipfile.ZIP_DEFLATED
            archive.writestr(entry, path.read_bytes())


if __name__ == "__main__":
    pack(HERE / "brochure", HERE / "brochure.idml")
