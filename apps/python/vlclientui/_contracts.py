"""What the library asks of clients and services that are written in Python. Nothing needs to derive from these."""

from typing import Protocol


class ServerClient(Protocol):
    """A server client, of either generation."""

    def GetServerInfo(self, request: str, /) -> str:
        """The server info document for a request document; empty when the server gives no answer."""
        ...


class ImageService(Protocol):
    """An image service. Every member that fails raises; nothing reports a failure by an empty text.

    Its generation is told by the name of its class, or by an attribute `type_name`: IOVLImageService, in any case, is
    the newer one.
    """

    @property
    def ServiceProperties(self) -> str:
        """The service properties document."""
        ...

    @property
    def ServiceInfo(self) -> str:
        """The service info document."""
        ...

    @property
    def status(self) -> str:
        """A document whose //Item/Message tells why the last call failed."""
        ...

    def getProperty(self, key: str, /) -> str:
        """Newer generation: a definition by its key, ClientXADef and so on."""
        ...

    def GetDefinition(self, kind: int, /) -> str:
        """A definition by its number, 1 to 4."""
        ...

    def GetImageMetadata(self, level: str, /) -> str:
        """Metadata of the image last returned: Basic, Full or all for an empty level."""
        ...

    def GetMetaData(self, key: str, /) -> str:
        """The metadata document of the service."""
        ...

    def SaveProperties(self, file_name: str, /) -> bool:
        """Whether the file was written."""
        ...

    def ExportProperties(self, request: str, /) -> None:
        """Takes the request of an export. A property that can be written does as well."""
        ...

    def ExportImage(self) -> bool:
        """Whether the export ran."""
        ...


class PropertiesCallback(Protocol):
    """What hears of a lock to a raster. A plain function of the document does as well."""

    def OnServicePropertiesChanged(self, xml: str, /) -> None:
        """Gets the whole service properties document."""
        ...
