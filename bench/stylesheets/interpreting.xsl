<?xml version="1.0"?>
<!-- Makes the message of any deployment: goes through the template and does, at each element, what
     the entries of the mapping say that name it as their parent. An element that has nothing in the
     template and no entry is left out; that a form answers none of the entries is not looked at,
     which spares this stylesheet a pass. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:include href="values.xsl"/>
  <xsl:param name="template-file"/>
  <xsl:param name="mapper-file"/>
  <xsl:param name="types-file"/>
  <xsl:param name="namespaces-file"/>
  <xsl:key name="entry" match="messageitem" use="parentxpath"/>
  <xsl:key name="type" match="schematype" use="@id"/>
  <xsl:key name="namespace" match="namespace" use="@id"/>

  <xsl:variable name="park" select="/"/>
  <xsl:variable name="mapper" select="document($mapper-file)"/>
  <xsl:variable name="types" select="document($types-file)"/>
  <xsl:variable name="namespaces" select="document($namespaces-file)"/>

  <xsl:template match="/">
    <xsl:apply-templates select="document($template-file)/*" mode="message"/>
  </xsl:template>

  <xsl:template match="*" mode="message">
    <xsl:param name="above"/>
    <xsl:variable name="path" select="concat($above, '/', name())"/>
    <xsl:variable name="model" select="."/>
    <xsl:for-each select="$mapper">
      <xsl:variable name="entries" select="key('entry', $path)[@toschema='true'] |
        message/docdata/docinfo[concat(parentxpath, '/', node) = $path]"/>
      <xsl:for-each select="$model[node() or $entries]">
        <xsl:copy>
          <xsl:copy-of select="@*|text()"/>
          <xsl:apply-templates select="*" mode="message">
            <xsl:with-param name="above" select="$path"/>
          </xsl:apply-templates>
          <xsl:apply-templates select="$entries"/>
        </xsl:copy>
      </xsl:for-each>
    </xsl:for-each>
  </xsl:template>

  <xsl:template match="docinfo[@id='protocolname']"><xsl:value-of select="$protocol"/></xsl:template>
  <xsl:template match="docinfo[@id='attestationdate']"><xsl:value-of select="$date"/></xsl:template>
  <xsl:template match="docinfo[@id='attestationtime']"><xsl:value-of select="$time"/></xsl:template>

  <xsl:template match="messageitem">
    <xsl:variable name="entry" select="."/>
    <xsl:variable name="namespace">
      <xsl:for-each select="$namespaces">
        <xsl:value-of select="key('namespace', substring-before($entry/node, ':'))/@ref"/>
      </xsl:for-each>
    </xsl:variable>
    <xsl:for-each select="$park">
      <xsl:apply-templates select="key('object', $entry/@id)">
        <xsl:with-param name="entry" select="$entry"/>
        <xsl:with-param name="namespace" select="$namespace"/>
      </xsl:apply-templates>
    </xsl:for-each>
  </xsl:template>

  <xsl:template match="prtobjct"/>

  <xsl:template match="prtobjct[@objecttype='field' and @value != '']">
    <xsl:param name="entry"/>
    <xsl:param name="namespace"/>
    <xsl:variable name="action" select="$entry/action/@id"/>
    <xsl:variable name="object" select="."/>
    <xsl:element name="{$entry/node}" namespace="{$namespace}">
      <xsl:choose>
        <xsl:when test="$action = 'addinfotonode'">
          <xsl:for-each select="$entry/action/parameter">
            <xsl:if test="position() != 1">
              <xsl:value-of select="../@separator"/>
            </xsl:if>
            <xsl:choose>
              <xsl:when test="@formvalue"><xsl:value-of select="$object/@value"/></xsl:when>
              <xsl:when test="@formlabel"><xsl:value-of select="$object/@fieldlabel"/></xsl:when>
            </xsl:choose>
          </xsl:for-each>
        </xsl:when>
        <xsl:when test="$action = 'structured_address_type'">
          <xsl:call-template name="address">
            <xsl:with-param name="value" select="@value"/>
            <xsl:with-param name="prefix" select="concat(substring-before($entry/node, ':'), ':')"/>
            <xsl:with-param name="namespace" select="$namespace"/>
          </xsl:call-template>
        </xsl:when>
        <xsl:when test="@type = 'date'">
          <xsl:call-template name="date">
            <xsl:with-param name="value" select="@value"/>
          </xsl:call-template>
        </xsl:when>
        <xsl:otherwise>
          <xsl:value-of select="translate(@value, '&#13;&#10;', '')"/>
        </xsl:otherwise>
      </xsl:choose>
    </xsl:element>
  </xsl:template>

  <xsl:template match="prtobjct[@objecttype='table']">
    <xsl:param name="entry"/>
    <xsl:param name="namespace"/>
    <xsl:variable name="action" select="$entry/action/@id"/>
    <xsl:choose>
      <xsl:when test="$action = 'rowinfotovalue'">
        <xsl:call-template name="row-texts">
          <xsl:with-param name="name" select="$entry/node"/>
          <xsl:with-param name="namespace" select="$namespace"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <xsl:variable name="rows" select="row[column/@value != '']"/>
        <xsl:for-each select="$types">
          <xsl:variable name="type" select="key('type', $action)"/>
          <xsl:for-each select="$rows">
            <xsl:variable name="row" select="."/>
            <xsl:element name="{$entry/node}" namespace="{$namespace}">
              <xsl:apply-templates select="$type/*" mode="place">
                <xsl:with-param name="row" select="$row"/>
              </xsl:apply-templates>
            </xsl:element>
          </xsl:for-each>
        </xsl:for-each>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template match="*[value]" mode="place">
    <xsl:param name="row"/>
    <xsl:variable name="value" select="$row/column[@id = current()/value/@id]/@value"/>
    <xsl:if test="$value != ''">
      <xsl:element name="{name()}" namespace="{namespace-uri()}">
        <xsl:value-of select="$value"/>
      </xsl:element>
    </xsl:if>
  </xsl:template>

  <xsl:template match="*[local-name() = 'AdditionalInfo']" mode="place">
    <xsl:param name="row"/>
    <xsl:variable name="model" select="."/>
    <xsl:for-each select="$row/column[not(@id = $model/../*/value/@id) and @value != '']">
      <xsl:element name="{name($model)}" namespace="{namespace-uri($model)}">
        <xsl:attribute name="id"><xsl:value-of select="@id"/></xsl:attribute>
        <xsl:value-of select="@value"/>
      </xsl:element>
    </xsl:for-each>
  </xsl:template>
</xsl:stylesheet>
