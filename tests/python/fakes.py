"""Clients and services written in Python, as a host would write its own."""

from __future__ import annotations

import pathlib
from typing import Callable, Optional
from xml.etree import ElementTree

import vlclientui

PROPERTIES = (
    "<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>Year</TileOrderField>"
    "<TileOrderBase>2020</TileOrderBase><LockImageID>7</LockImageID>"
    "<AvgImageSpacingX>5</AvgImageSpacingX><AvgImageSpacingY>2</AvgImageSpacingY>"
    "<Resampling>Nearest</Resampling><NoData/><Srs><Name>Sample grid</Name><Prj>EPSG:32632</Prj></Srs>"
)
INFO = (
    "<Name>Alps</Name><KeyDetails><Title>The Alps from above</Title><GeographicRegion>Alps</GeographicRegion>"
    "<PixelSource>Aerial</PixelSource></KeyDetails><NBands>3</NBands><BitDepth>8</BitDepth><MaxNCols>3000</MaxNCols>"
    "<MaxNRows>2000</MaxNRows><PixelSize>0.5</PixelSize><ClientEnvelope><XMin>100</XMin><YMin>10</YMin>"
    "<XMax>200</XMax><YMax>30</YMax></ClientEnvelope>"
)
BASIC = (
    "<XMin>100</XMin><YMin>10</YMin><XMax>200</XMax><YMax>30</YMax><NCols>512</NCols><NRows>256</NRows>"
    "<NBands>3</NBands><PixelType>Byte</PixelType><BufferSize>393216</BufferSize>"
)
RASTERS = (
    "<Raster><Info><RasterId>12.5</RasterId><RasterName>north</RasterName><Visible>True</Visible></Info>"
    "<Metadata><Sensor>frame</Sensor></Metadata><Attributes><Year>1998</Year></Attributes></Raster>"
    "<Raster><Info><RasterId>2</RasterId><RasterName>south</RasterName><Visible>False</Visible></Info></Raster>"
)
EXTENT_OF_ALPS = (
    "<AddImageServiceDialog><CustomEnvelope><XMin>5</XMin><YMin>44</YMin><XMax>12</XMax><YMax>48</YMax>"
    "</CustomEnvelope></AddImageServiceDialog>"
)


def text_in(document: str, element: str) -> str:
    """The text of the first element of that name."""
    found = ElementTree.fromstring(document).find(f".//{element}")
    assert found is not None, f"no {element} in {document}"
    return found.text or ""


def properties(content: str = PROPERTIES) -> str:
    return f"<Vorlane><ImageServiceProperties>{content}</ImageServiceProperties></Vorlane>"


def image_metadata(basic: str = BASIC, rasters: str = RASTERS) -> str:
    return (
        f"<Vorlane><Client><ImageMetadata><Basic>{basic}</Basic><Detailed><Rasters>{rasters}</Rasters>"
        "</Detailed></ImageMetadata></Client></Vorlane>"
    )


def _cut(file: pathlib.Path, path: str) -> str:
    found = ElementTree.parse(file).getroot().find(path)
    assert found is not None, f"{file} lacks {path}"
    return ElementTree.tostring(found, encoding="unicode")


def definitions_of(session: vlclientui.Session) -> dict[int, str]:
    """What a service hands out as its definitions, from those that are shipped."""
    folder = pathlib.Path(session.definitions)
    made = {}
    for number, (wrapper, file, path) in enumerate(
        [
            ("XADef", "VLClient.XADef", "ImageServiceProperties"),
            ("XFDef", "VLClient.Xfdef", "ImageServiceProperties"),
            ("XADef", "VLClient.XADef", "Metadata"),
            ("XFDef", "VLClient.Xfdef", "Metadata"),
        ],
        start=1,
    ):
        content = _cut(folder / file, path)
        made[number] = f"<{wrapper}>{content if path == 'Metadata' else f'<Vorlane>{content}</Vorlane>'}</{wrapper}>"
    return made


class Service:
    """A whole service that keeps what it is asked, and fails where it is told to."""

    type_name = "IImageService"

    def __init__(self, definitions: dict[int, str]) -> None:
        self.definitions = definitions
        self.properties = properties()
        self.image = image_metadata()
        self.calls: list[str] = []
        self.failing: dict[str, BaseException] = {}
        self.answers: dict[str, object] = {}
        self.request = ""
        self.saved: list[str] = []
        self.during_export: Optional[Callable[[], None]] = None

    def _told(self, member: str, answer: object) -> object:
        self.calls.append(member)
        if member in self.failing:
            raise self.failing[member]
        return self.answers.get(member, answer)

    @property
    def ServiceProperties(self) -> object:
        return self._told("ServiceProperties", self.properties)

    @property
    def ServiceInfo(self) -> object:
        return self._told("ServiceInfo", f"<Vorlane><ImageServiceInfo>{INFO}</ImageServiceInfo></Vorlane>")

    @property
    def status(self) -> object:
        return self._told("status", "<Vorlane><Item><Message>the disk is full</Message></Item></Vorlane>")

    def getProperty(self, key: str) -> object:
        keys = ["ClientXADef", "ClientXFDef", "ServiceMetadataXADef", "ServiceMetadataXFDef"]
        return self._told("getProperty", self.definitions[keys.index(key) + 1])

    def GetDefinition(self, kind: int) -> object:
        return self._told("GetDefinition", self.definitions[kind])

    def GetImageMetadata(self, level: str) -> object:
        return self._told("GetImageMetadata", self.image)

    def GetMetaData(self, key: str) -> object:
        return self._told("GetMetaData", "<Metadata><Title>Metadata of the Alps</Title></Metadata>")

    def SaveProperties(self, file_name: str) -> object:
        self.saved.append(file_name)
        return self._told("SaveProperties", True)

    def _write_request(self, request: str) -> None:
        self._told("ExportProperties", None)
        self.request = request

    ExportProperties = property(fset=_write_request)

    def ExportImage(self) -> object:
        if self.during_export:
            self.during_export()
        return self._told("ExportImage", True)


def described(title: str, x: float) -> str:
    return (
        f"<ImageServiceInfo><Name>n</Name><GeographicEnvelope><XMin>{x}</XMin><XMax>{x + 1}</XMax><YMin>45</YMin>"
        f"<YMax>46</YMax></GeographicEnvelope><KeyDetails><Title>{title}</Title><GeographicRegion>Alps"
        "</GeographicRegion><PixelUnit>m</PixelUnit><PixelSource>Radar</PixelSource></KeyDetails><ColorSpace>1"
        "</ColorSpace><PixelType>Byte</PixelType><BitDepth>8</BitDepth><NBands>3</NBands></ImageServiceInfo>"
    )


class Server:
    """A server that knows some names, and is silent under one."""

    def __init__(self, services: Optional[dict[str, str]] = None) -> None:
        self.services = services or {
            "Roads/2004/West": described("Roads of the west", 6),
            "Roads/2004/East": described("Roads of the east", 60),
            "Relief": described("Relief of the Alps", 7),
            "Untitled": "<ImageServiceInfo><Name>n</Name></ImageServiceInfo>",
        }
        self.requests: list[str] = []

    def GetServerInfo(self, request: str) -> str:
        self.requests.append(request)
        if "<Server>silent</Server>" in request:
            return ""
        listed = "".join(f"<Service><Name>{name}</Name>{info}</Service>" for name, info in self.services.items())
        return (
            "<Vorlane><Server><Info><Detailed><ServiceProviders><ServiceProvider><Services>"
            f"{listed}</Services></ServiceProvider></ServiceProviders></Detailed></Info></Server></Vorlane>"
        )
