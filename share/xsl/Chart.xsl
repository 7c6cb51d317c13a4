<?xml version="1.0" encoding="UTF-8"?>
<!-- extension=svg -->
<!-- Chart: a Brindar Pro XML export as an SVG bar chart, one row per folder with a bar for
     its number of files and a bar for their bytes, 980 pixels wide. The comment above
     makes the XML viewer name the result .svg and show it in a page of its own. -->
<xsl:stylesheet version="1.0"
    xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns="http://www.w3.org/2000/svg">

<xsl:output method="xml" encoding="UTF-8" indent="yes" media-type="image/svg+xml"/>

<!-- The page that shows the chart is 980 pixels wide. -->
<xsl:variable name="width" select="980"/>
<xsl:variable name="rowHeight" select="20"/>
<xsl:variable name="top" select="84"/>
<xsl:variable name="labelWidth" select="320"/>
<xsl:variable name="filesX" select="340"/>
<xsl:variable name="filesBar" select="200"/>
<xsl:variable name="bytesX" select="640"/>
<xsl:variable name="bytesBar" select="220"/>

<xsl:template match="/">
  <xsl:variable name="volume" select="involume"/>
  <xsl:variable name="dirs" select="$volume//dir"/>
  <xsl:variable name="height" select="$top + count($dirs) * $rowHeight + 16"/>
  <xsl:variable name="maxFiles">
    <xsl:for-each select="$dirs">
      <xsl:sort select="count(file)" data-type="number" order="descending"/>
      <xsl:if test="position() = 1"><xsl:value-of select="count(file)"/></xsl:if>
    </xsl:for-each>
  </xsl:variable>
  <xsl:variable name="maxBytes">
    <xsl:for-each select="$dirs">
      <xsl:sort select="sum(file/size) + 4294967296 * count(file/size[. &lt; 0])" data-type="number" order="descending"/>
      <xsl:if test="position() = 1">
        <xsl:value-of select="sum(file/size) + 4294967296 * count(file/size[. &lt; 0])"/>
      </xsl:if>
    </xsl:for-each>
  </xsl:variable>

  <svg width="{$width}" height="{$height}" viewBox="0 0 {$width} {$height}"
       font-family="Helvetica, Arial, sans-serif" font-size="12">
    <title>Files and bytes per folder</title>
    <defs>
      <!-- Long or deep folder names stop before the bars. -->
      <clipPath id="label">
        <rect x="0" y="0" width="{$labelWidth}" height="{$rowHeight}"/>
      </clipPath>
    </defs>
    <rect x="0" y="0" width="{$width}" height="{$height}" fill="#ffffff"/>
    <text x="8" y="24" font-size="18" font-weight="bold" fill="#222222">
      <xsl:text>Files and bytes per folder</xsl:text>
    </text>
    <text x="8" y="44" fill="#555555">
      <xsl:text>Volume </xsl:text>
      <xsl:choose>
        <xsl:when test="normalize-space($volume/@name)"><xsl:value-of select="$volume/@name"/></xsl:when>
        <xsl:otherwise>(no label)</xsl:otherwise>
      </xsl:choose>
      <xsl:if test="normalize-space($volume/@filesystem)">
        <xsl:text> · </xsl:text>
        <xsl:value-of select="$volume/@filesystem"/>
      </xsl:if>
      <xsl:if test="normalize-space($volume/@dategeneration)">
        <xsl:text> · generated </xsl:text>
        <xsl:value-of select="$volume/@dategeneration"/>
      </xsl:if>
      <xsl:text> · </xsl:text>
      <xsl:value-of select="count($dirs)"/>
      <xsl:text> folder(s), </xsl:text>
      <xsl:value-of select="count($volume//file)"/>
      <xsl:text> file(s)</xsl:text>
    </text>
    <g font-weight="bold" fill="#222222">
      <text x="8" y="{$top - 10}">Folder</text>
      <text x="{$filesX}" y="{$top - 10}">Files</text>
      <text x="{$bytesX}" y="{$top - 10}">Bytes</text>
    </g>
    <line x1="0" y1="{$top - 4}" x2="{$width}" y2="{$top - 4}" stroke="#2f5f8f" stroke-width="1"/>

    <xsl:for-each select="$dirs">
      <xsl:variable name="files" select="count(file)"/>
      <!-- The export keeps the low 32 bits of a size as a signed number, so a file of 2 to
           4 GB comes out negative: adding 2^32 gives its size back. -->
      <xsl:variable name="bytes" select="sum(file/size) + 4294967296 * count(file/size[. &lt; 0])"/>
      <!-- Bars are scaled to the largest folder; any folder with something shows at
           least one pixel. -->
      <xsl:variable name="filesWidth">
        <xsl:choose>
          <xsl:when test="number($maxFiles) &gt; 0 and $files * $filesBar div number($maxFiles) &lt; 1 and $files &gt; 0">1</xsl:when>
          <xsl:when test="number($maxFiles) &gt; 0 and $files &gt; 0">
            <xsl:value-of select="format-number($files * $filesBar div number($maxFiles), '0.##')"/>
          </xsl:when>
          <xsl:otherwise>0</xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <xsl:variable name="bytesWidth">
        <xsl:choose>
          <xsl:when test="number($maxBytes) &gt; 0 and $bytes * $bytesBar div number($maxBytes) &lt; 1 and $bytes &gt; 0">1</xsl:when>
          <xsl:when test="number($maxBytes) &gt; 0 and $bytes &gt; 0">
            <xsl:value-of select="format-number($bytes * $bytesBar div number($maxBytes), '0.##')"/>
          </xsl:when>
          <xsl:otherwise>0</xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <g class="dir" transform="translate(0,{$top + (position() - 1) * $rowHeight})">
        <title>
          <xsl:call-template name="folder-name"/>
          <xsl:text>: </xsl:text>
          <xsl:value-of select="$files"/>
          <xsl:text> file(s), </xsl:text>
          <xsl:value-of select="format-number($bytes, '#,##0')"/>
          <xsl:text> bytes</xsl:text>
        </title>
        <xsl:if test="position() mod 2 = 0">
          <rect x="0" y="0" width="{$width}" height="{$rowHeight}" fill="#f2f5f8"/>
        </xsl:if>
        <text x="{8 + count(ancestor::dir) * 14}" y="14" fill="#222222" clip-path="url(#label)">
          <xsl:choose>
            <!-- The first folder shows where the tree is; the others, indented, their name. -->
            <xsl:when test="position() = 1"><xsl:call-template name="folder-name"/></xsl:when>
            <xsl:when test="normalize-space(name)"><xsl:value-of select="name"/></xsl:when>
            <xsl:otherwise><xsl:call-template name="folder-name"/></xsl:otherwise>
          </xsl:choose>
        </text>
        <rect x="{$filesX}" y="4" width="{$filesWidth}" height="12" fill="#2f5f8f"/>
        <text x="{$filesX + $filesWidth + 4}" y="14" fill="#333333">
          <xsl:value-of select="$files"/>
        </text>
        <rect x="{$bytesX}" y="4" width="{$bytesWidth}" height="12" fill="#d9822b"/>
        <text x="{$bytesX + $bytesWidth + 4}" y="14" fill="#333333">
          <xsl:call-template name="bytes">
            <xsl:with-param name="value" select="$bytes"/>
          </xsl:call-template>
        </text>
      </g>
    </xsl:for-each>
  </svg>
</xsl:template>

<!-- The current folder's full name; the root of a volume may have none. -->
<xsl:template name="folder-name">
  <xsl:choose>
    <xsl:when test="normalize-space(fullname)"><xsl:value-of select="fullname"/></xsl:when>
    <xsl:when test="normalize-space(name)"><xsl:value-of select="name"/></xsl:when>
    <xsl:otherwise>/</xsl:otherwise>
  </xsl:choose>
</xsl:template>

<!-- Bytes in the unit that keeps the number short. -->
<xsl:template name="bytes">
  <xsl:param name="value"/>
  <xsl:choose>
    <xsl:when test="$value &gt;= 1073741824">
      <xsl:value-of select="format-number($value div 1073741824, '#,##0.#')"/> GB</xsl:when>
    <xsl:when test="$value &gt;= 1048576">
      <xsl:value-of select="format-number($value div 1048576, '#,##0.#')"/> MB</xsl:when>
    <xsl:when test="$value &gt;= 1024">
      <xsl:value-of select="format-number($value div 1024, '#,##0.#')"/> KB</xsl:when>
    <xsl:otherwise>
      <xsl:value-of select="format-number($value, '0')"/> bytes</xsl:otherwise>
  </xsl:choose>
</xsl:template>

</xsl:stylesheet>
