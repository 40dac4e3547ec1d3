"""Windows and services of VLClientUI for Python.

A session gives the library to a thread; everything else is made in it:

    import vlclientui

    with vlclientui.headless() as session:
        for service in session.services():
            print(service.name)

docs/python.md has recipes.
"""

from ._failures import RuntimeFailure
from ._words import MessageAnswer, PropertyPageId
from ._contracts import ImageService, PropertiesCallback, ServerClient
from ._core import (
    CatalogueImageService,
    CatalogueServerClient,
    Control,
    Drawing,
    Field,
    IExportImageDialog,
    IImageServicesDialog,
    IOVLImageServicesDialog,
    IOVLServicePropertiesDialog,
    IOVLServicePropertiesDialog2,
    IServicePropertiesDialog,
    MessageBox,
    Node,
    Page,
    PublicObject,
    RasterFacts,
    ServiceDescription,
    Session,
    Silence,
    Window,
    allows_mosaic_method,
    current_session,
    export_format_of,
    export_formats,
    format_number,
    hand_over,
    handed_over,
    headless,
    live_object_count,
    lock_document,
    number_to_text,
    public_classes,
    read_decimal,
    service_reference,
    text_to_number,
)
from ._export import export
from ._version import __version__


def desktop(catalogue: str = "", home: str = "", locale: str = "") -> Session:
    """Starts a session with real windows on this thread, in place of the one before.

    The window system is reached now and not before, so that a program without a display may import all else.

    Args:
        catalogue: the folder served as 127.0.0.1; empty for the samples, or what VLCLIENTUI_CATALOGUE names.
        home: the folder that holds `definitions` and `help`; empty to find it.
        locale: how numbers are written, such as de_DE.UTF-8; empty for the user's.

    Raises:
        RuntimeFailure: without an installation, when the catalogue is no folder, without a display, or on another thread
            than the first one with windows.
    """
    from . import _windows

    return _windows.desktop(catalogue, home, locale)


__all__ = [
    "CatalogueImageService",
    "CatalogueServerClient",
    "Control",
    "Drawing",
    "Field",
    "IExportImageDialog",
    "IImageServicesDialog",
    "IOVLImageServicesDialog",
    "IOVLServicePropertiesDialog",
    "IOVLServicePropertiesDialog2",
    "IServicePropertiesDialog",
    "ImageService",
    "MessageAnswer",
    "MessageBox",
    "Node",
    "Page",
    "PropertiesCallback",
    "PropertyPageId",
    "PublicObject",
    "RasterFacts",
    "RuntimeFailure",
    "ServerClient",
    "ServiceDescription",
    "Session",
    "Silence",
    "Window",
    "__version__",
    "allows_mosaic_method",
    "current_session",
    "desktop",
    "export",
    "export_format_of",
    "export_formats",
    "format_number",
    "hand_over",
    "handed_over",
    "headless",
    "live_object_count",
    "lock_document",
    "number_to_text",
    "public_classes",
    "read_decimal",
    "service_reference",
    "text_to_number",
]
