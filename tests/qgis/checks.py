"""What holds of the plugin, each in a function of its own. They run one after the other in one QGIS; the picture of a
check is that of the tour, too."""

import os
import subprocess
import time

from PyQt5.QtCore import Qt, QTimer
from PyQt5.QtGui import QImage
from PyQt5.QtTest import QTest
from PyQt5.QtWidgets import (
    QAbstractButton,
    QAbstractItemView,
    QApplication,
    QCheckBox,
    QComboBox,
    QDockWidget,
    QLineEdit,
    QListView,
    QPushButton,
    QToolBar,
    QTreeWidget,
    QTreeWidgetItemIterator,
    QWidget,
)
from qgis.core import (
    QgsLayoutExporter,
    QgsLayoutItemMap,
    QgsLayoutPoint,
    QgsLayoutSize,
    QgsPointXY,
    QgsPrintLayout,
    QgsProject,
    QgsProviderRegistry,
    QgsRaster,
    QgsRasterBlockFeedback,
    QgsRasterFileWriter,
    QgsRasterLayer,
    QgsRasterPipe,
    QgsRectangle,
)
from qgis.utils import iface

from layers import (
    KEY,
    LANDSCAPE,
    OVERLAP,
    SERVER,
    add,
    clear,
    layer_of,
    middle_color,
    picture_of,
    same_share,
    settle,
)
from person import (
    action,
    choose,
    click,
    double_click_row,
    expect,
    find,
    in_modal_window,
    picture,
    wait_for,
    Watch,
)

FOLDER = os.environ["VLQGIS_FOLDER"]
# Sheets of the sample, where all three lie over each other.
WESTERN, NORTHERN, EASTERN = (196, 60, 52), (70, 150, 74), (58, 96, 186)


def file_in_folder(name):
    return os.path.join(FOLDER, name)


def dock(name):
    return find(QDockWidget, "VLClientUI" + name + "Dock")


def open_pane(name):
    pane = dock(name)
    if not pane.isVisible():
        pane.toggleViewAction().trigger()
    wait_for(f"the page of {name}", lambda: find(QWidget, name + "DockPlace", pane).isVisible())
    return pane


def close_panes():
    for name in ("Properties", "ViewPoint", "Metadata", "Export"):
        dock(name).close()


def apply(pane):
    click(find(QPushButton, "ApplyProperties", pane))


def check_the_plugin_adds_a_menu_a_tool_bar_and_the_provider():
    expect(KEY in QgsProviderRegistry.instance().providerList(), "QGIS does not know the provider")
    expect(find(QToolBar, "VLClientUIBar").actions(), "the tool bar is empty")
    for name in ("AddServices", "Properties", "ViewPoint", "Metadata", "Export", "AddValues"):
        action(name)
    expect(action("AddServices").isEnabled() and not action("Properties").isEnabled(), "the wrong actions are enabled")


def check_picked_services_become_layers():
    def pick(window):
        rows = wait_for("the folders", lambda: list_of(window))
        double_click_row(rows, "Elevation")
        wait_for("its services", lambda: "Terrain_30m" in names_of(list_of(window)))
        double_click_row(list_of(window), "Terrain_30m")
        wait_for("it is selected", lambda: find(QListView, "ListBox", window).model().rowCount() == 1)
        picture("add-services", window)
        click(find(QPushButton, "uibtnok", window))

    in_modal_window(action("AddServices").trigger, "Add Vor Lane Connection", pick)
    layers = list(QgsProject.instance().mapLayers().values())
    expect(len(layers) == 1 and layers[0].dataProvider().name() == KEY, f"no layer: {layers}")
    expect(layers[0].isValid() and layers[0].name(), "the layer has no name")
    wait_for("its service open", lambda: action("Properties").isEnabled())
    settle()
    picture("first-layer")
    clear()


def list_of(window):
    for view in window.findChildren(QAbstractItemView):
        if view.isVisible() and view.model() is not None and view.model().columnCount() > 3 and view.model().rowCount():
            return view
    return None


def names_of(rows):
    return [] if rows is None else [rows.model().index(row, 0).data() for row in range(rows.model().rowCount())]


def check_the_map_filters_the_services_of_the_picker():
    layer = add(SERVER + "World/EGM96_Geoid")
    iface.mapCanvas().setExtent(QgsRectangle(-60, -10, -50, 0))
    settle()

    def look(window):
        wait_for("the folders", lambda: len(names_of(list_of(window))) > 2)
        click(find(QCheckBox, "Check1", window))
        wait_for("the folder World alone", lambda: names_of(list_of(window)) == ["World"])
        picture("add-services-filter", window)
        click(find(QCheckBox, "Check1", window))
        click(find(QPushButton, "uibtncancel", window))

    in_modal_window(action("AddServices").trigger, "Add Vor Lane Connection", look)
    clear()


def check_a_layer_has_the_pixels_of_the_viewer():
    for reference in (LANDSCAPE, OVERLAP, SERVER + "Imagery/Valley/Ortho_Mosaic"):
        layer = layer_of(reference)
        extent = layer.extent()
        # Within the layer, and in whole numbers: else QGIS asks for a pixel more than the view has. Odd ones: no middle
        # of a pixel lies on the edge of a raster.
        pixel = float((int(min(extent.width() / 560, extent.height() / 440)) - 1) // 2 * 2 + 1)
        x = round(extent.center().x() / pixel) * pixel
        y = round(extent.center().y() / pixel) * pixel
        view = QgsRectangle(x - 256 * pixel, y - 200 * pixel, x + 256 * pixel, y + 200 * pixel)
        file = file_in_folder("viewer.png")
        words = [reference, layer.crs().authid(), repr(x), repr(y), repr(pixel), "512", "400", file]
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
        subprocess.run([os.environ["VLQGIS_VIEWER"], *words], check=True, env=environment, timeout=120)
        share = same_share(picture_of(layer, view, (512, 400)), QImage(file))
        expect(share == 1, f"{reference}: {share:.4f} of the pixels are the same")


def check_applied_properties_are_drawn_and_kept():
    layer = add(OVERLAP, "overlap")
    close_panes()
    pane = open_pane("Properties")
    before = middle_color(layer)
    picture("method-before")
    choose(find(QComboBox, "MosaicMethod", pane), "Closest to Viewpoint")
    apply(pane)
    wait_for("the middle sheet on top", lambda: middle_color(layer) == NORTHERN)
    expect(before != NORTHERN, "it was on top before")
    expect("properties=" in layer.source(), "the source of the layer keeps no properties")
    settle()
    picture("method-after")


def check_a_step_of_the_viewpoint_is_drawn():
    layer = iface.activeLayer()
    pane = open_pane("ViewPoint")
    click(find(QAbstractButton, "MoveLeft", pane))
    wait_for("the western sheet on top", lambda: middle_color(layer) == WESTERN)
    settle()
    picture("viewpoint")
    close_panes()


def check_a_project_keeps_a_layer_and_its_properties():
    file = file_in_folder("kept.qgs")
    source = iface.activeLayer().source()
    drawn = picture_of(iface.activeLayer())
    expect(QgsProject.instance().write(file), "the project cannot be written")
    clear()
    expect(QgsProject.instance().read(file), "the project cannot be read")
    layer = next(iter(QgsProject.instance().mapLayers().values()))
    expect(layer.isValid() and layer.source() == source, f"the layer came back as {layer.source()[:200]}")
    expect(same_share(picture_of(layer), drawn) == 1, "the layer looks different")
    iface.setActiveLayer(layer)
    wait_for("the service open", lambda: action("Properties").isEnabled())


def check_the_metadata_are_those_of_the_image_on_the_map():
    iface.mapCanvas().setExtent(iface.activeLayer().extent())
    settle()
    pane = open_pane("Metadata")
    tree = find(QTreeWidget, "uiTreeView", pane)
    items = wait_for("its tree", lambda: items_of(tree))
    tree.setCurrentItem(items[-1])
    tree.setFocus()
    QTest.keyClick(tree, Qt.Key_Return)
    wait_for("the three sheets", lambda: find(QComboBox, "RasterList", pane).count() == 3)
    picture("metadata")


def items_of(tree):
    items = []
    at = QTreeWidgetItemIterator(tree)
    while at.value() is not None:
        items.append(at.value())
        at += 1
    return items


def check_a_lock_of_the_metadata_page_is_drawn():
    layer = iface.activeLayer()
    pane = dock("Metadata")
    rasters = find(QComboBox, "RasterList", pane)
    expect(rasters.currentText().startswith("sheet_"), f"the page shows {rasters.currentText()}")
    color = {"sheet_red": WESTERN, "sheet_green": NORTHERN, "sheet_blue": EASTERN}[rasters.currentText().split(" ")[0]]
    corner = picture_of(layer).pixelColor(390, 290)
    click(find(QAbstractButton, "Command7", pane))
    wait_for("a lock in the source of the layer", lambda: "LockRaster" in layer.source())
    wait_for("that sheet on top", lambda: middle_color(layer) == color)
    expect(color == EASTERN or picture_of(layer).pixelColor(390, 290) != corner, "the other sheets are still there")
    settle()
    picture("lock")
    close_panes()


def check_the_windows_of_properties_and_viewpoint_open_over_qgis():
    for name in ("Properties", "ViewPoint"):
        seen = []

        def look(window):
            end = time.monotonic() + 0.5
            wait_for("a moment", lambda: time.monotonic() > end)
            seen.append(window.windowTitle())
            picture("window-" + name.lower(), window)
            window.close()

        in_modal_window(action(name).trigger, None, look)
        expect(seen, f"no window for {name}")
        expect(QApplication.activeModalWidget() is None, "a window stayed open")


def check_identify_tells_values_and_source_rasters():
    layer = layer_of(OVERLAP)
    provider = layer.dataProvider()
    middle = layer.extent().center()
    stores = provider.identify(middle, QgsRaster.IdentifyFormatFeature).results()[0]
    expect(len(stores) == 3, f"{len(stores)} source rasters")
    first = stores[0].features()[0].attributeMap()
    expect(first["State"] == "shown", f"{first}")
    values = provider.identify(middle, QgsRaster.IdentifyFormatValue).results()
    expect(len(values) == 3 and tuple(int(values[band]) for band in (1, 2, 3)) == middle_color(layer), f"{values}")
    outside = QgsPointXY(layer.extent().xMaximum() + 1e5, middle.y())
    expect(provider.identify(outside, QgsRaster.IdentifyFormatValue).results() == {}, "values beside the service")


def check_the_identify_tool_shows_them():
    from qgis.gui import QgsMapToolIdentify

    layer = add(OVERLAP, "overlap")
    tool = QgsMapToolIdentify(iface.mapCanvas())
    at = iface.mapCanvas().getCoordinateTransform().transform(layer.extent().center())
    results = tool.identify(int(at.x()), int(at.y()), [layer], QgsMapToolIdentify.DefaultQgsSetting)
    labels = [result.mLabel for result in results]
    expect(len(results) == 3 and all(labels), f"{labels}")
    clear()


def check_values_are_bands_of_their_own_type():
    values = layer_of(LANDSCAPE, "values", "&content=values")
    own = QgsRasterLayer(os.path.join(os.environ["VLQGIS_CATALOGUE"], "Elevation", "Terrain_30m.tif"), "own")
    expect(values.bandCount() == own.bandCount(), "bands differ")
    extent = own.extent()
    one = values.dataProvider().block(1, extent, own.width(), own.height())
    other = own.dataProvider().block(1, extent, own.width(), own.height())
    places = [(row, column) for row in range(0, own.height(), 37) for column in range(0, own.width(), 41)]
    differing = [
        place for place in places
        if one.isNoData(*place) != other.isNoData(*place)
        or (not other.isNoData(*place) and abs(one.value(*place) - other.value(*place)) > 1e-6)
    ]
    expect(places and not differing, f"{len(differing)} of {len(places)} values differ, the first at {differing[:1]}")


def check_processing_computes_with_the_values():
    import processing
    from processing.core.Processing import Processing

    Processing.initialize()
    values = layer_of(LANDSCAPE, "values", "&content=values")
    told = processing.run("native:rasterlayerstatistics", {"INPUT": values, "BAND": 1})
    expect(told["MAX"] > told["MIN"], f"{told}")
    calculated = processing.run(
        "native:reclassifybytable",
        {"INPUT_RASTER": values, "RASTER_BAND": 1, "TABLE": ["-99999", "99999", "7"], "OUTPUT": file_in_folder("classes.tif")},
    )
    classes = QgsRasterLayer(calculated["OUTPUT"], "classes")
    middle = classes.extent().center()
    expect(classes.dataProvider().sample(middle, 1)[0] == 7, "the values are not classified")


def check_processing_saves_a_service_for_algorithms_that_read_files():
    import processing
    from processing.core.Processing import Processing

    Processing.initialize()
    layer = layer_of(LANDSCAPE, "terrain")
    saved = processing.run("vlclientui:saveasraster", {"INPUT": layer, "OUTPUT": file_in_folder("saved.tif")})["OUTPUT"]
    raster, values = QgsRasterLayer(saved, "saved"), layer_of(LANDSCAPE, "values", "&content=values")
    expect((raster.width(), raster.height()) == (values.width(), values.height()), f"{raster.width()}, {raster.height()}")
    place = values.extent().center()
    one, other = (each.dataProvider().sample(place, 1)[0] for each in (raster, values))
    expect(one == other, f"{one} in place of {other}")
    shaded = processing.run("gdal:hillshade", {"INPUT": saved, "BAND": 1, "OUTPUT": file_in_folder("shaded.tif")})
    expect(QgsRasterLayer(shaded["OUTPUT"], "shaded").isValid(), "no algorithm of GDAL reads it")
    part = {"INPUT": layer, "CONTENT": 1, "EXTENT": quarter_of(layer), "PIXEL": 300, "OUTPUT": file_in_folder("part.tif")}
    colors = QgsRasterLayer(processing.run("vlclientui:saveasraster", part)["OUTPUT"], "colors")
    expect(colors.bandCount() == 4 and abs(colors.width() * 300 - layer.extent().width() / 2) <= 300, f"{colors.width()}")


def quarter_of(layer):
    extent, middle = layer.extent(), layer.extent().center()
    return f"{extent.xMinimum()},{middle.x()},{extent.yMinimum()},{middle.y()} [{layer.crs().authid()}]"


def check_qgis_saves_a_layer_as_a_raster():
    for content, name in (("", "colors.tif"), ("&content=values", "values.tif")):
        layer = layer_of(LANDSCAPE, "save", content)
        file = file_in_folder(name)
        writer = QgsRasterFileWriter(file)
        pipe = QgsRasterPipe()
        pipe.set(layer.dataProvider().clone())
        outcome = writer.writeRaster(
            pipe, 120, 90, layer.extent(), layer.crs(), QgsProject.instance().transformContext(), QgsRasterBlockFeedback()
        )
        expect(outcome == QgsRasterFileWriter.NoError, f"{name}: {outcome}")
        written = QgsRasterLayer(file, "written")
        expect(written.isValid() and (written.width(), written.height()) == (120, 90), f"{name} is no such raster")
        expect(written.bandCount() == (4 if not content else layer.bandCount()), f"{name}: {written.bandCount()} bands")


def check_a_print_layout_shows_a_layer():
    layer = layer_of(OVERLAP)
    QgsProject.instance().addMapLayer(layer)
    layout = QgsPrintLayout(QgsProject.instance())
    layout.initializeDefaults()
    item = QgsLayoutItemMap(layout)
    item.attemptMove(QgsLayoutPoint(10, 10))
    item.attemptResize(QgsLayoutSize(120, 90))
    layout.addLayoutItem(item)
    item.setLayers([layer])
    item.setCrs(layer.crs())
    item.setExtent(layer.extent())
    file = file_in_folder("layout.png")
    settings = QgsLayoutExporter.ImageExportSettings()
    settings.dpi = 60
    expect(QgsLayoutExporter(layout).exportToImage(file, settings) == QgsLayoutExporter.Success, "no layout")
    image = QImage(file)
    place = (10 + 60) / 297 * image.width(), (10 + 45) / 210 * image.height()
    color = image.pixelColor(int(place[0]), int(place[1])).getRgb()[:3]
    expect(color == middle_color(layer), f"the layout shows {color}")
    clear()


def check_a_drawing_is_given_up_at_once():
    layer = layer_of(LANDSCAPE)
    feedback = QgsRasterBlockFeedback()
    feedback.cancel()
    block = layer.dataProvider().block(1, layer.extent(), 2000, 2000, feedback)
    expect(block is not None, "no block")
    expect(block.color(1000, 1000) >> 24 == 0, "it was drawn all the same")


def check_the_export_window_offers_the_map_and_the_drawn_rectangle():
    layer = add(OVERLAP, "overlap")
    canvas = iface.mapCanvas()
    action_draw = next(a for a in find(QToolBar, "VLClientUIBar").actions() if a.isCheckable() and "extent" in a.text())
    action_draw.trigger()
    places = [canvas.rect().center() * 0.8, canvas.rect().center() * 1.1]
    QTest.mousePress(canvas.viewport(), Qt.LeftButton, Qt.NoModifier, places[0])
    QTest.mouseMove(canvas.viewport(), places[1])
    QTest.mouseRelease(canvas.viewport(), Qt.LeftButton, Qt.NoModifier, places[1])
    wait_for("the tool from before", lambda: not action_draw.isChecked())
    file = file_in_folder("exported.Tif")
    offered = []

    def export(window):
        box = wait_for("its file", lambda: named_line(window))
        extents = find(QComboBox, "MainCombo", window)
        offered.extend(extents.itemText(row) for row in range(extents.count()))
        box.selectAll()
        QTest.keyClicks(box, file)
        QTest.keyClick(box, Qt.Key_Tab)
        picture("export", window)
        click(find(QPushButton, "Command1", window))

    def see(window):
        picture("export-result", window)
        window.close()

    result = Watch("the result", result_window, see)
    in_modal_window(action("Export").trigger, "Export Image Properties", export)
    result.finish()
    expect("Current map view" in offered and "Drawn rectangle" in offered, f"{offered}")
    expect(QgsRasterLayer(file, "exported").isValid(), "nothing was exported")
    clear()


def named_line(window):
    box = window.findChild(QLineEdit, "uiTxtFileName")
    return box if box is not None and box.text() else None


def result_window():
    window = QApplication.activeModalWidget()
    if window is None or window.windowTitle().startswith("Export Image Properties") or not window.isVisible():
        return None
    return window if "ExportResult" in window.metaObject().className() else None
