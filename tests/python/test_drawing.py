"""Pictures and pixels as arrays of NumPy."""

from __future__ import annotations

import numpy
import pytest

from fakes import text_in
from vlclientui import RuntimeFailure, Session

GEOID = "ImageService://127.0.0.1/World/EGM96_Geoid"
STUDY = "ImageService://127.0.0.1/Imagery/Overlap_Study"


def test_a_picture_has_rows_columns_and_four_bytes(session: Session) -> None:
    picture = session.open(GEOID).draw(72, 36)
    assert picture.shape == (36, 72, 4)
    assert picture.dtype == numpy.uint8
    assert picture.flags["C_CONTIGUOUS"] and picture.flags["OWNDATA"] and picture.flags["WRITEABLE"]
    assert (picture[..., 3] == 255).all()
    assert len(numpy.unique(picture[..., :3])) > 16


def test_a_picture_is_transparent_beside_the_service(session: Session) -> None:
    service = session.open(GEOID)
    xmin, ymin, xmax, ymax = service.facts.extent
    picture = service.draw(40, 10, (xmin - (xmax - xmin), ymin, xmax, ymax))
    assert (picture[:, :19, 3] == 0).all() and (picture[:, 21:, 3] == 255).all()


def test_values_have_bands_rows_and_columns_in_the_type_of_the_pixels(session: Session) -> None:
    service = session.open(GEOID)
    values = service.drawing().read(144, 72)
    assert values.shape == (1, 72, 144)
    assert values.dtype == numpy.float32
    assert not values.mask.any()
    assert -110 < values.min() < -90 and 70 < values.max() < 95


def test_values_are_masked_where_there_are_no_data(session: Session) -> None:
    service = session.open(GEOID)
    xmin, ymin, xmax, ymax = service.facts.extent
    values = service.drawing().read(40, 10, (xmin - (xmax - xmin), ymin, xmax, ymax))
    assert values.mask[0, :, :19].all() and not values.mask[0, :, 21:].any()
    assert values.count() >= 10 * 19


def test_values_follow_the_properties(session: Session) -> None:
    service = session.open(STUDY)
    assert service.facts.band_count >= 3
    before = service.drawing().read(60, 40)
    service.ServiceProperties = (
        "<Vorlane><ImageServiceProperties><MosaicMethod>Lock Raster</MosaicMethod><LockImageID>1</LockImageID>"
        "</ImageServiceProperties></Vorlane>"
    )
    locked = service.drawing().read(60, 40)
    assert locked.mask.sum() > before.mask.sum()


def test_a_drawing_stays_as_it_was_when_the_service_changes(session: Session) -> None:
    service = session.open(STUDY)
    drawing = service.drawing()
    before = drawing.draw(60, 40)
    service.ServiceProperties = (
        "<Vorlane><ImageServiceProperties><MosaicMethod>Lock Raster</MosaicMethod><LockImageID>1</LockImageID>"
        "</ImageServiceProperties></Vorlane>"
    )
    assert numpy.array_equal(drawing.draw(60, 40), before)
    assert not numpy.array_equal(service.draw(60, 40), before)


def test_a_map_may_be_of_any_system(session: Session) -> None:
    drawing = session.open(GEOID).drawing()
    mercator = drawing.draw_map(64, 64, (-2e7, -2e7, 2e7, 2e7), "EPSG:3857")
    assert mercator.shape == (64, 64, 4)
    assert (mercator[..., 3] == 255).mean() > 0.95
    own = drawing.draw_map(64, 32, (-180, -90, 180, 90))
    assert not numpy.array_equal(own, mercator[:32])
    study = session.open(STUDY).drawing()
    assert (study.draw_map(8, 8, (-1e7, -1e6, -9e6, 0), "EPSG:3857")[..., 3] == 0).all()


def test_a_text_that_names_no_system_is_a_failure(session: Session) -> None:
    with pytest.raises(RuntimeFailure, match="no coordinate system"):
        session.open(GEOID).drawing().draw_map(8, 8, (0, 0, 1, 1), "EPSG:0")


def test_values_under_a_place_tell_every_source(session: Session) -> None:
    service = session.open(STUDY)
    xmin, ymin, xmax, ymax = service.facts.extent
    sources = service.drawing().values_at((xmin + xmax) / 2, (ymin + ymax) / 2)
    assert [source["is_on_top"] for source in sources].count(True) == 1
    top = next(source for source in sources if source["is_on_top"])
    assert top["kind"] == "data" and len(top["bands"]) >= 3 and top["bands"][0]["value"] is not None
    (height,) = session.open(GEOID).drawing().values_at(8, 46, "EPSG:4326")
    assert height["bands"][0]["unit"] == "m" and 40 < height["bands"][0]["value"] < 60


def test_the_image_that_was_drawn_is_the_image_last_returned(session: Session) -> None:
    service = session.open(GEOID)
    service.draw(36, 18, (0, 0, 36, 18))
    assert text_in(service.GetImageMetadata("Basic"), "NCols") == "36"
    service.drawing().draw(50, 50)
    assert text_in(service.GetImageMetadata("Basic"), "NCols") == "36"


def test_facts_tell_size_place_and_system(session: Session) -> None:
    facts = session.open(GEOID).facts
    assert (facts.columns, facts.rows, facts.band_count, facts.pixel_type) == (1440, 721, 1, "Float32")
    assert (facts.system_id, facts.pixel_unit, facts.pixel_size) == ("EPSG:4326", "m", 0.25)
    assert facts.extent == (-180.125, -90.125, 179.875, 90.125)


def test_a_mosaic_tells_where_its_sources_lie(session: Session) -> None:
    service = session.open(STUDY)
    xmin, ymin, xmax, ymax = service.facts.extent
    assert len(service.source_extents) > 1
    assert all(xmin <= source[0] < source[2] <= xmax for source in service.source_extents)
    x, y = service.viewpoint
    assert xmin < x < xmax and ymin < y < ymax
