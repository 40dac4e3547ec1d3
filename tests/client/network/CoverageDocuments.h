#pragma once

#include <string>

/// Documents of coverage services as servers write them, shortened.
namespace vlclientui::client::network {

inline std::string capabilities201(const std::string& contents, const std::string& profiles = "") {
  return R"(<?xml version="1.0"?><wcs:Capabilities xmlns:wcs="http://www.opengis.net/wcs/2.0"
    xmlns:ows="http://www.opengis.net/ows/2.0" xmlns:xlink="http://www.w3.org/1999/xlink" version="2.0.1">
    <ows:ServiceIdentification><ows:Title>Survey</ows:Title><ows:Abstract>All sheets</ows:Abstract>
    <ows:Keywords><ows:Keyword>elevation</ows:Keyword></ows:Keywords>
    <ows:ServiceTypeVersion>2.0.1</ows:ServiceTypeVersion><ows:ServiceTypeVersion>1.1.1</ows:ServiceTypeVersion>)" +
         profiles + R"(</ows:ServiceIdentification><ows:OperationsMetadata>
    <ows:Operation name="DescribeCoverage"><ows:DCP><ows:HTTP><ows:Get xlink:href="http://inside/d?"/></ows:HTTP></ows:DCP></ows:Operation>
    <ows:Operation name="GetCoverage"><ows:DCP><ows:HTTP><ows:Get xlink:href="http://inside/g?"/></ows:HTTP></ows:DCP></ows:Operation>
    </ows:OperationsMetadata><wcs:ServiceMetadata><wcs:formatSupported>image/png</wcs:formatSupported>
    <wcs:formatSupported>image/tiff</wcs:formatSupported></wcs:ServiceMetadata><wcs:Contents>)" +
         contents + "</wcs:Contents></wcs:Capabilities>";
}

inline const std::string geographicCoverage = R"(<wcs:CoverageDescription gml:id="geoid">
  <gml:boundedBy><gml:Envelope srsName="http://www.opengis.net/def/crs/EPSG/0/4326" axisLabels="lat long"
    uomLabels="deg deg" srsDimension="2"><gml:lowerCorner>-90.125 -180.125</gml:lowerCorner>
    <gml:upperCorner>90.125 179.875</gml:upperCorner></gml:Envelope></gml:boundedBy>
  <wcs:CoverageId>geoid</wcs:CoverageId>
  <gml:domainSet><gml:RectifiedGrid dimension="2"><gml:limits><gml:GridEnvelope><gml:low>0 0</gml:low>
    <gml:high>1439 720</gml:high></gml:GridEnvelope></gml:limits><gml:axisLabels>long lat</gml:axisLabels>
    <gml:origin><gml:Point><gml:pos>90.000000 -180.000000</gml:pos></gml:Point></gml:origin>
    <gml:offsetVector>0 0.250000</gml:offsetVector><gml:offsetVector>-0.250000 0</gml:offsetVector>
  </gml:RectifiedGrid></gml:domainSet>
  <gmlcov:rangeType><swe:DataRecord><swe:field name="band1"><swe:Quantity><swe:description>Height</swe:description>
    <swe:nilValues><swe:NilValues><swe:nilValue>-9999</swe:nilValue></swe:NilValues></swe:nilValues>
    <swe:uom code="m"/><swe:constraint><swe:AllowedValues><swe:interval>-110 90</swe:interval>
    </swe:AllowedValues></swe:constraint></swe:Quantity></swe:field></swe:DataRecord></gmlcov:rangeType>
  <wcs:ServiceParameters><wcs:CoverageSubtype>RectifiedGridCoverage</wcs:CoverageSubtype>
    <wcs:nativeFormat>image/tiff</wcs:nativeFormat></wcs:ServiceParameters></wcs:CoverageDescription>)";

inline std::string descriptions201(const std::string& coverages) {
  return R"(<?xml version="1.0"?><wcs:CoverageDescriptions xmlns:wcs="http://www.opengis.net/wcs/2.0"
    xmlns:gml="http://www.opengis.net/gml/3.2" xmlns:gmlcov="http://www.opengis.net/gmlcov/1.0"
    xmlns:swe="http://www.opengis.net/swe/2.0">)" +
         coverages + "</wcs:CoverageDescriptions>";
}

/// @param high the last index of columns and rows, as the server counts it. @param step of the rows.
inline std::string description100(const std::string& high, const std::string& step) {
  return R"(<?xml version="1.0"?><CoverageDescription version="1.0.0" xmlns="http://www.opengis.net/wcs"
    xmlns:gml="http://www.opengis.net/gml"><CoverageOffering><description>A scene</description><name>Scene</name>
    <label>Scene 2021</label><keywords><keyword>summer</keyword></keywords>
    <lonLatEnvelope srsName="urn:ogc:def:crs:OGC:1.3:CRS84"><gml:pos>8.37 46.43</gml:pos><gml:pos>8.67 46.64</gml:pos></lonLatEnvelope>
    <domainSet><spatialDomain><gml:Envelope srsName="EPSG:4326"><gml:pos>8.37 46.43</gml:pos><gml:pos>8.67 46.64</gml:pos></gml:Envelope>
    <gml:Envelope srsName="EPSG:32632"><gml:pos>452000 5142960</gml:pos><gml:pos>475040 5166000</gml:pos></gml:Envelope>
    <gml:RectifiedGrid dimension="2"><gml:limits><gml:GridEnvelope><gml:low>0 0</gml:low><gml:high>)" +
         high +
         R"(</gml:high></gml:GridEnvelope></gml:limits><gml:origin><gml:pos>452000 5166000</gml:pos></gml:origin>
    <gml:offsetVector>30 0</gml:offsetVector><gml:offsetVector>0 )" +
         step + R"(</gml:offsetVector></gml:RectifiedGrid></spatialDomain></domainSet>
    <rangeSet><RangeSet><name>Bands</name><axisDescription><AxisDescription><name>bands</name><values>
    <singleValue>1</singleValue><singleValue>2</singleValue></values></AxisDescription></axisDescription>
    <nullValues><singleValue>0</singleValue></nullValues></RangeSet></rangeSet>
    <supportedCRSs><requestResponseCRSs>EPSG:32632 EPSG:4326</requestResponseCRSs><nativeCRSs>EPSG:32632</nativeCRSs></supportedCRSs>
    <supportedFormats nativeFormat="GeoTIFF"><formats>GeoTIFF</formats><formats>PNG JPEG</formats></supportedFormats>
    </CoverageOffering></CoverageDescription>)";
}

inline const std::string description111 =
    R"(<?xml version="1.0"?><CoverageDescriptions xmlns="http://www.opengis.net/wcs/1.1"
    xmlns:ows="http://www.opengis.net/ows/1.1"><CoverageDescription><ows:Title>Geoid heights</ows:Title>
    <ows:Abstract>World</ows:Abstract><Identifier>geoid</Identifier><Domain><SpatialDomain>
    <ows:BoundingBox crs="urn:ogc:def:crs:OGC::imageCRS" dimensions="2"><ows:LowerCorner>0 0</ows:LowerCorner><ows:UpperCorner>1439 720</ows:UpperCorner></ows:BoundingBox>
    <ows:BoundingBox crs="urn:ogc:def:crs:EPSG::4326" dimensions="2"><ows:LowerCorner>-90.125 -180.125</ows:LowerCorner><ows:UpperCorner>90.125 179.875</ows:UpperCorner></ows:BoundingBox>
    <GridCRS><GridBaseCRS>urn:ogc:def:crs:EPSG::4326</GridBaseCRS><GridOrigin>90 -180</GridOrigin><GridOffsets>-0.25 0.25</GridOffsets></GridCRS>
    </SpatialDomain></Domain><Range><Field><Identifier>raster</Identifier><NullValue>-9999</NullValue>
    <Axis identifier="bands"><AvailableKeys><Key>1</Key></AvailableKeys></Axis></Field></Range>
    <SupportedFormat>image/tiff</SupportedFormat></CoverageDescription></CoverageDescriptions>)";

}  // namespace vlclientui::client::network
