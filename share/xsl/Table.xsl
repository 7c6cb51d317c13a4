<?xml version="1.0" encoding="UTF-8"?>
<!-- Table: a Brindar Pro XML export as one self-contained HTML page, a section per folder
     and a table row per file with its size, dates and metadata. -->
<xsl:stylesheet version="1.0"
    xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"
    exclude-result-prefixes="rdf">

<xsl:output method="html" encoding="UTF-8" indent="yes" doctype-system="about:legacy-compat"/>

<xsl:template match="/">
  <xsl:variable name="volume" select="involume"/>
  <xsl:variable name="root" select="$volume/dir[1]"/>
  <html lang="en">
    <head>
      <meta name="viewport" content="width=device-width, initial-scale=1"/>
      <title>
        <xsl:text>Brindar Pro export</xsl:text>
        <xsl:if test="$root">
          <xsl:text>: </xsl:text>
          <xsl:call-template name="folder-name">
            <xsl:with-param name="dir" select="$root"/>
          </xsl:call-template>
        </xsl:if>
      </title>
      <style>
body { font-family: system-ui, "Segoe UI", Helvetica, Arial, sans-serif; margin: 1.5em; color: #222; background: #fff; }
h1 { font-size: 1.5em; margin: 0 0 .3em; overflow-wrap: anywhere; }
p.volume, p.totals { margin: .2em 0; color: #555; }
section.dir { margin-top: 2em; }
h2 { font-size: 1.1em; margin: 0 0 .3em; padding: .3em .5em; background: #e8eef4; border-left: 4px solid #2f5f8f; overflow-wrap: anywhere; }
p.comment { margin: .2em 0 .5em; font-style: italic; color: #444; }
p.count { margin: .2em 0 .5em; color: #666; font-size: .9em; }
p.nofiles { margin: .2em 0 .5em; color: #888; font-style: italic; }
table { border-collapse: collapse; width: 100%; font-size: .85em; }
th { background: #2f5f8f; color: #fff; text-align: left; padding: .35em .5em; position: sticky; top: 0; }
td { border-bottom: 1px solid #dde3e9; padding: .3em .5em; vertical-align: top; overflow-wrap: anywhere; }
tr.file:nth-child(even) { background: #f5f7fa; }
td.num, td.date { white-space: nowrap; }
td.name { overflow-wrap: break-word; min-width: 9em; }
td.num { text-align: right; }
a { color: #1a4f8a; }
ul.other { list-style: none; margin: 0; padding: 0; color: #444; }
ul.other b { font-weight: 600; color: #222; }
footer { margin-top: 2em; color: #888; font-size: .8em; }
      </style>
    </head>
    <body>
      <header>
        <h1>
          <xsl:choose>
            <xsl:when test="$root">
              <xsl:call-template name="folder-name">
                <xsl:with-param name="dir" select="$root"/>
              </xsl:call-template>
            </xsl:when>
            <xsl:otherwise>Brindar Pro export</xsl:otherwise>
          </xsl:choose>
        </h1>
        <p class="volume">
          <xsl:text>Volume </xsl:text>
          <b>
            <xsl:choose>
              <xsl:when test="normalize-space($volume/@name)"><xsl:value-of select="$volume/@name"/></xsl:when>
              <xsl:otherwise>(no label)</xsl:otherwise>
            </xsl:choose>
          </b>
          <xsl:if test="normalize-space($volume/@filesystem)">
            <xsl:text> · file system </xsl:text>
            <b><xsl:value-of select="$volume/@filesystem"/></b>
          </xsl:if>
          <xsl:if test="normalize-space($volume/@dategeneration)">
            <xsl:text> · generated </xsl:text>
            <b><xsl:value-of select="$volume/@dategeneration"/></b>
          </xsl:if>
        </p>
        <p class="totals">
          <xsl:value-of select="count($volume//dir)"/>
          <xsl:text> folder(s) · </xsl:text>
          <xsl:value-of select="count($volume//file)"/>
          <xsl:text> file(s) · </xsl:text>
          <xsl:call-template name="bytes">
            <xsl:with-param name="sizes" select="$volume//file/size"/>
          </xsl:call-template>
        </p>
      </header>
      <!-- Every folder in document order: a folder, then the folders below it. -->
      <xsl:apply-templates select="$volume//dir"/>
      <xsl:if test="not($volume//dir)">
        <p class="nofiles">no folders</p>
      </xsl:if>
      <xsl:if test="comment()[contains(., 'Created with')]">
        <footer>
          <xsl:value-of select="normalize-space(comment()[contains(., 'Created with')][1])"/>
        </footer>
      </xsl:if>
    </body>
  </html>
</xsl:template>

<xsl:template match="dir">
  <section class="dir" id="dir{id}">
    <h2>
      <xsl:call-template name="folder-name">
        <xsl:with-param name="dir" select="."/>
      </xsl:call-template>
    </h2>
    <xsl:if test="normalize-space(maccomments)">
      <p class="comment"><xsl:value-of select="maccomments"/></p>
    </xsl:if>
    <xsl:choose>
      <xsl:when test="file">
        <p class="count">
          <xsl:value-of select="count(file)"/>
          <xsl:text> file(s) · </xsl:text>
          <xsl:call-template name="bytes">
            <xsl:with-param name="sizes" select="file/size"/>
          </xsl:call-template>
        </p>
        <table>
          <thead>
            <tr>
              <th>Name</th><th>Size</th><th>Created</th><th>Last saved</th>
              <th>Title</th><th>Author</th><th>Subject</th><th>Keywords</th>
              <th>Application</th><th>Pages</th><th>Other</th>
            </tr>
          </thead>
          <tbody>
            <xsl:apply-templates select="file"/>
          </tbody>
        </table>
      </xsl:when>
      <xsl:otherwise>
        <p class="nofiles">no files</p>
      </xsl:otherwise>
    </xsl:choose>
  </section>
</xsl:template>

<xsl:template match="file">
  <!-- The values of the columns, from whichever family the file carries. -->
  <xsl:variable name="title" select="(summary/title | pdf/title | html/title | iptc/objectname | iptc/headline)[normalize-space()]"/>
  <xsl:variable name="author" select="(summary/author | pdf/author | html/creator | iptc/byline)[normalize-space()]"/>
  <xsl:variable name="subject" select="(summary/subject | pdf/subject | html/subject | iptc/caption)[normalize-space()]"/>
  <xsl:variable name="keywords" select="(summary/keywords | pdf/keywords | html/subject.keywords | iptc/keyword)[normalize-space()]"/>
  <xsl:variable name="application" select="(summary/application | pdf/creator | html/generator | iptc/originatingprogram)[normalize-space()]"/>
  <xsl:variable name="pages" select="(summary/pages | pdf/pages)[normalize-space()]"/>
  <xsl:variable name="shown" select="$title | $author | $subject | $keywords | $application | $pages"/>
  <tr class="file">
    <td class="name">
      <xsl:choose>
        <!-- The export already writes blanks as %20, except in the names of PDF files. -->
        <xsl:when test="normalize-space(fullname)">
          <a href="file://{fullname}"><xsl:value-of select="name"/></a>
        </xsl:when>
        <xsl:otherwise><xsl:value-of select="name"/></xsl:otherwise>
      </xsl:choose>
    </td>
    <td class="num">
      <xsl:choose>
        <!-- A negative size is a file of 2 GB or more: see the template "bytes". -->
        <xsl:when test="size &lt; 0">
          <xsl:attribute name="title">exported as <xsl:value-of select="size"/></xsl:attribute>
          <xsl:call-template name="number">
            <xsl:with-param name="value" select="size + 4294967296"/>
          </xsl:call-template>
        </xsl:when>
        <xsl:when test="size">
          <xsl:call-template name="number">
            <xsl:with-param name="value" select="size"/>
          </xsl:call-template>
        </xsl:when>
      </xsl:choose>
    </td>
    <td class="date"><xsl:value-of select="datetime/creation"/></td>
    <td class="date"><xsl:value-of select="datetime/lastsave"/></td>
    <td>
      <xsl:call-template name="cell">
        <xsl:with-param name="nodes" select="$title"/>
        <xsl:with-param name="xmp" select="'title'"/>
      </xsl:call-template>
    </td>
    <td>
      <xsl:call-template name="cell">
        <xsl:with-param name="nodes" select="$author"/>
        <xsl:with-param name="xmp" select="'creator'"/>
      </xsl:call-template>
    </td>
    <td>
      <xsl:call-template name="cell">
        <xsl:with-param name="nodes" select="$subject"/>
        <xsl:with-param name="xmp" select="'description'"/>
      </xsl:call-template>
    </td>
    <td>
      <xsl:call-template name="cell">
        <xsl:with-param name="nodes" select="$keywords"/>
        <xsl:with-param name="xmp" select="'subject'"/>
      </xsl:call-template>
    </td>
    <td>
      <xsl:call-template name="cell">
        <xsl:with-param name="nodes" select="$application"/>
        <xsl:with-param name="xmp" select="'CreatorTool'"/>
      </xsl:call-template>
    </td>
    <td class="num"><xsl:value-of select="$pages[1]"/></td>
    <td>
      <xsl:variable name="others"
          select="(html/* | pdf/* | iptc/* | summary/*[not(self::userprop)])[normalize-space()][count(. | $shown) != count($shown)]"/>
      <xsl:variable name="xmpProperties" select="xmp//rdf:Description/*[normalize-space()]"/>
      <xsl:variable name="xmpAttributes"
          select="xmp//rdf:Description/@*[namespace-uri() != 'http://www.w3.org/1999/02/22-rdf-syntax-ns#'][normalize-space()]"/>
      <xsl:variable name="dates" select="datetime/*[not(self::creation or self::lastsave)][normalize-space()]"/>
      <xsl:variable name="more" select="attributes[normalize-space()] | shortname[normalize-space()][. != ../name] | maccomments[normalize-space()]"/>
      <xsl:if test="$others | .//userprop | $xmpProperties | $xmpAttributes | $dates | $more">
        <ul class="other">
          <xsl:for-each select="$others | $dates | $more">
            <li><b><xsl:value-of select="local-name()"/>:</b><xsl:text> </xsl:text><xsl:value-of select="normalize-space()"/></li>
          </xsl:for-each>
          <xsl:for-each select=".//userprop">
            <li><b><xsl:value-of select="normalize-space(nameprop)"/>:</b><xsl:text> </xsl:text><xsl:value-of select="normalize-space(valueprop)"/></li>
          </xsl:for-each>
          <xsl:for-each select="$xmpAttributes">
            <li><b><xsl:value-of select="name()"/>:</b><xsl:text> </xsl:text><xsl:value-of select="normalize-space()"/></li>
          </xsl:for-each>
          <xsl:for-each select="$xmpProperties">
            <li>
              <b><xsl:value-of select="name()"/>:</b>
              <xsl:text> </xsl:text>
              <xsl:call-template name="xmp-text">
                <xsl:with-param name="property" select="."/>
              </xsl:call-template>
            </li>
          </xsl:for-each>
        </ul>
      </xsl:if>
    </td>
  </tr>
</xsl:template>

<!-- A column's values joined by "; " (an image may have several keywords and authors);
     without any, the file's XMP property of the given local name. -->
<xsl:template name="cell">
  <xsl:param name="nodes"/>
  <xsl:param name="xmp"/>
  <xsl:choose>
    <xsl:when test="$nodes">
      <xsl:for-each select="$nodes">
        <xsl:if test="position() &gt; 1">; </xsl:if>
        <xsl:value-of select="normalize-space()"/>
      </xsl:for-each>
    </xsl:when>
    <xsl:otherwise>
      <xsl:variable name="property" select="(xmp//rdf:Description/*[local-name() = $xmp])[1]"/>
      <xsl:choose>
        <xsl:when test="$property">
          <xsl:call-template name="xmp-text">
            <xsl:with-param name="property" select="$property"/>
          </xsl:call-template>
        </xsl:when>
        <xsl:otherwise>
          <xsl:value-of select="normalize-space((xmp//rdf:Description/@*[local-name() = $xmp])[1])"/>
        </xsl:otherwise>
      </xsl:choose>
    </xsl:otherwise>
  </xsl:choose>
</xsl:template>

<!-- The text of an XMP property: the default-language item of an alternative, the items
     of a list joined by "; ", or the plain value. -->
<xsl:template name="xmp-text">
  <xsl:param name="property"/>
  <xsl:variable name="items" select="$property//rdf:li"/>
  <xsl:choose>
    <xsl:when test="$items[@xml:lang = 'x-default']">
      <xsl:value-of select="normalize-space($items[@xml:lang = 'x-default'][1])"/>
    </xsl:when>
    <xsl:when test="$items">
      <xsl:for-each select="$items">
        <xsl:if test="position() &gt; 1">; </xsl:if>
        <xsl:value-of select="normalize-space()"/>
      </xsl:for-each>
    </xsl:when>
    <xsl:otherwise><xsl:value-of select="normalize-space($property)"/></xsl:otherwise>
  </xsl:choose>
</xsl:template>

<!-- A folder's full name; the root of a volume may have none. -->
<xsl:template name="folder-name">
  <xsl:param name="dir"/>
  <xsl:choose>
    <xsl:when test="normalize-space($dir/fullname)"><xsl:value-of select="$dir/fullname"/></xsl:when>
    <xsl:when test="normalize-space($dir/name)"><xsl:value-of select="$dir/name"/></xsl:when>
    <xsl:otherwise>/</xsl:otherwise>
  </xsl:choose>
</xsl:template>

<xsl:template name="number">
  <xsl:param name="value"/>
  <xsl:choose>
    <xsl:when test="string(number($value)) = 'NaN'"><xsl:value-of select="$value"/></xsl:when>
    <xsl:otherwise><xsl:value-of select="format-number($value, '#,##0')"/></xsl:otherwise>
  </xsl:choose>
</xsl:template>

<!-- The export keeps the low 32 bits of a size as a signed number, so a file of 2 to 4 GB
     comes out negative: adding 2^32 gives its size back. -->
<xsl:template name="bytes">
  <xsl:param name="sizes"/>
  <xsl:call-template name="number">
    <xsl:with-param name="value" select="sum($sizes) + 4294967296 * count($sizes[. &lt; 0])"/>
  </xsl:call-template>
  <xsl:text> bytes</xsl:text>
</xsl:template>

</xsl:stylesheet>
