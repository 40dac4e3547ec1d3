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
    Connection,
    Control,
    Drawing,
    ExportJob,
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
    desktop,
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
from . import export_job
from ._export import export
from ._version import __version__


__all__ = [
    "CatalogueImageService",
    "CatalogueServerClient",
    "Connection",
    "Control",
    "Drawing",
    "ExportJob",
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
    "export_job",
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
