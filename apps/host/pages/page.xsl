<?xml version="1.0" encoding="UTF-8"?>
<!-- Makes every page of the host from its view document: home, form, receipt, trouble. A deployment's
     page.xsl may import this one as "built-in:page.xsl" and replace single templates. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat"/>

  <xsl:template match="/*">
    <html>
      <xsl:attribute name="lang">
        <xsl:choose><xsl:when test="@lang"><xsl:value-of select="@lang"/></xsl:when><xsl:otherwise>en</xsl:otherwise></xsl:choose>
      </xsl:attribute>
      <head>
        <meta name="viewport" content="width=device-width, initial-scale=1"/>
        <title><xsl:apply-templates select="." mode="title"/></title>
        <link rel="stylesheet" href="/static/host.css"/>
        <link rel="icon" href="data:,"/>
        <xsl:call-template name="head"/>
      </head>
      <body class="page-{local-name()}">
        <a class="skip" href="#content">Skip to the content</a>
        <header class="masthead"><xsl:call-template name="masthead"/></header>
        <main id="content" tabindex="-1"><xsl:apply-templates select="." mode="content"/></main>
        <footer class="footer"><xsl:call-template name="footer"/></footer>
      </body>
    </html>
  </xsl:template>

  <!-- What a deployment is most likely to want otherwise. -->
  <xsl:template name="head"/>
  <xsl:template name="masthead"><a href="/">Forms</a></xsl:template>
  <xsl:template name="footer"/>

  <!-- The list of forms -->

  <xsl:template match="/home" mode="title">Forms</xsl:template>

  <xsl:template match="/home" mode="content">
    <h1>Forms</h1>
    <h2>Fill in a new form</h2>
    <ul class="forms">
      <xsl:for-each select="entry">
        <li><a href="/forms/{@name}"><xsl:value-of select="@title"/></a>
          <xsl:if test="intro"><p><xsl:value-of select="intro"/></p></xsl:if>
        </li>
      </xsl:for-each>
    </ul>
    <h2>Open a saved form</h2>
    <p>A form that was saved has an address of its own, which ends in 32 letters and digits. Open
      it from your bookmarks or your browser's history, or follow the link that you kept. Whoever
      knows the address can open the form, so keep it to yourself.</p>
  </xsl:template>

  <!-- A form -->

  <xsl:template match="/form" mode="title">
    <xsl:if test="problem and not(@notice = 'conflict')">Errors: </xsl:if>
    <xsl:value-of select="@title"/>
  </xsl:template>

  <xsl:template match="/form" mode="content">
    <h1><xsl:value-of select="@title"/></h1>
    <xsl:call-template name="notice"/>
    <xsl:if test="problem"><xsl:call-template name="summary"/></xsl:if>
    <xsl:if test="intro"><p class="intro"><xsl:value-of select="intro"/></p></xsl:if>
    <xsl:if test="count(section) &gt; 2">
      <nav class="contents" aria-label="Sections">
        <ol>
          <xsl:for-each select="section">
            <li><a href="#{@id}"><xsl:value-of select="@title"/></a>
              <xsl:variable name="wrong" select="count(.//error)"/>
              <xsl:if test="$wrong &gt; 0">
                <xsl:text> </xsl:text><span class="count"><xsl:value-of select="$wrong"/>
                  <xsl:choose><xsl:when test="$wrong = 1"> error</xsl:when>
                    <xsl:otherwise> errors</xsl:otherwise></xsl:choose></span>
              </xsl:if>
            </li>
          </xsl:for-each>
        </ol>
      </nav>
    </xsl:if>
    <form method="post" action="{@action}" accept-charset="UTF-8" id="form" novalidate="novalidate"
          data-state="{@state}" data-unsaved="{@unsaved}" data-notice="{@notice}" autocomplete="off">
      <!-- Its button is the form's first, so the one that the Enter key presses. -->
      <xsl:call-template name="bar"/>
      <input type="hidden" name="_token" value="{@token}"/>
      <input type="hidden" name="_version" value="{@version}"/>
      <xsl:for-each select="hidden">
        <input type="hidden" name="{@name}" value="{@value}"/>
      </xsl:for-each>
      <fieldset class="all">
        <xsl:if test="@state = 'accepted'"><xsl:attribute name="disabled">disabled</xsl:attribute></xsl:if>
        <legend class="hidden">Questions</legend>
        <xsl:apply-templates select="section"/>
      </fieldset>
      <xsl:call-template name="actions"/>
    </form>
    <script src="/static/host.js" defer="defer"></script>
  </xsl:template>

  <xsl:template name="state-text">
    <xsl:choose>
      <xsl:when test="@state = 'accepted'">Sent and accepted</xsl:when>
      <xsl:when test="@state = 'refused'">Saved, not sent: it has errors</xsl:when>
      <xsl:when test="@state = 'parked'">Saved, not sent yet</xsl:when>
      <xsl:otherwise>New, not saved yet</xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="bar">
    <div class="bar">
      <p class="state state-{@state}" role="status" id="state">
        <strong><xsl:call-template name="state-text"/></strong>
        <xsl:if test="@saved"><span class="when"><xsl:text> </xsl:text><xsl:value-of select="@saved"/></span></xsl:if>
      </p>
      <xsl:choose>
        <xsl:when test="@state = 'accepted'"><a class="button small" href="/messages/{@id}">Receipt</a></xsl:when>
        <xsl:otherwise><button name="_action" value="park" class="button secondary small">Save</button></xsl:otherwise>
      </xsl:choose>
    </div>
  </xsl:template>

  <xsl:template name="actions">
    <div class="actions">
      <xsl:choose>
        <xsl:when test="@state = 'accepted'">
          <a class="button" href="/messages/{@id}">Show the receipt</a>
        </xsl:when>
        <xsl:when test="@id">
          <button name="_action" value="submit" class="button">Check and send</button>
          <button name="_action" value="park" class="button secondary">Save for later</button>
        </xsl:when>
        <xsl:otherwise>
          <button name="_action" value="park" class="button" id="first-save">Save and continue</button>
          <p class="note">Saving gives the form an address of its own; from there it can be sent.</p>
        </xsl:otherwise>
      </xsl:choose>
    </div>
  </xsl:template>

  <xsl:template name="notice">
    <xsl:variable name="text">
      <xsl:choose>
        <xsl:when test="@notice = 'conflict'">This form was saved elsewhere after you opened this page. Nothing was overwritten. Below stand your answers; where the saved form differs its answer is shown beside yours. Saving now keeps what stands in the inputs.</xsl:when>
        <xsl:when test="@notice = 'accepted'">This form was sent and accepted before. Changes made since then were not saved.</xsl:when>
        <xsl:when test="@notice = 'not-checked'">The form was saved, but it could not be checked, so it was not sent. The fault is ours and has been recorded. Try to send it again later.</xsl:when>
        <xsl:when test="@notice = 'failed'">The form could not be processed. The fault is ours and has been recorded. Your answers still stand below; they were not saved.</xsl:when>
        <xsl:when test="@notice = 'token'">This page was open for too long, or did not come from here. Your answers still stand below and were not saved yet: please press the button again.</xsl:when>
        <xsl:when test="@notice = 'rows'">A table has more rows than can be taken. Nothing was saved.</xsl:when>
      </xsl:choose>
    </xsl:variable>
    <xsl:if test="string($text)">
      <div class="notice notice-{@notice}" role="alert"><p><xsl:value-of select="$text"/></p></div>
    </xsl:if>
  </xsl:template>

  <xsl:template name="summary">
    <div class="summary" role="alert" tabindex="-1" id="summary" autofocus="autofocus" aria-labelledby="summary-title">
      <h2 id="summary-title">
        <xsl:variable name="count" select="count(problem)"/>
        <xsl:choose>
          <xsl:when test="@notice = 'conflict'"><xsl:value-of select="$count"/>
            <xsl:choose><xsl:when test="$count = 1"> answer differs</xsl:when><xsl:otherwise> answers differ</xsl:otherwise></xsl:choose></xsl:when>
          <xsl:when test="$count = 1">There is 1 error</xsl:when>
          <xsl:otherwise>There are <xsl:value-of select="$count"/> errors</xsl:otherwise>
        </xsl:choose>
      </h2>
      <xsl:if test="not(@notice = 'conflict')">
        <p>The form was saved and not sent. Mend what is wrong and send it again.</p>
      </xsl:if>
      <ul>
        <xsl:for-each select="problem">
          <li>
            <xsl:choose>
              <xsl:when test="@anchor">
                <a href="#{@anchor}">
                  <xsl:value-of select="@label"/>
                  <xsl:if test="@row">, <xsl:value-of select="@row"/></xsl:if>
                  <xsl:if test="@column">, <xsl:value-of select="@column"/></xsl:if>
                </a>
                <xsl:if test="string(.)">: <xsl:value-of select="."/></xsl:if>
              </xsl:when>
              <xsl:when test="@unmendable">The message made of this form is not valid, and no answer is to blame. Those who run this form have been told.</xsl:when>
              <xsl:otherwise><xsl:value-of select="."/></xsl:otherwise>
            </xsl:choose>
          </li>
        </xsl:for-each>
      </ul>
    </div>
  </xsl:template>

  <xsl:template match="section">
    <section id="{@id}" aria-labelledby="{@id}-title">
      <h2 id="{@id}-title"><xsl:value-of select="@title"/></h2>
      <xsl:if test="help"><p class="help"><xsl:value-of select="help"/></p></xsl:if>
      <xsl:apply-templates select="field | table"/>
    </section>
  </xsl:template>

  <!-- A question: label, help, what is wrong, input -->

  <xsl:template match="field">
    <div class="field kind-{@kind}{@marks}">
      <xsl:choose>
        <xsl:when test="@plain">
          <label for="{@anchor}"><xsl:call-template name="label-text"/></label>
          <xsl:if test="@described"><xsl:call-template name="around"/></xsl:if>
          <xsl:call-template name="input"/>
        </xsl:when>
        <xsl:when test="@kind = 'radio'">
          <fieldset id="{@anchor}" tabindex="-1">
            <xsl:call-template name="described"/>
            <legend><xsl:call-template name="label-text"/></legend>
            <xsl:call-template name="around"/>
            <xsl:call-template name="input"/>
          </fieldset>
        </xsl:when>
        <xsl:when test="@kind = 'check'">
          <xsl:call-template name="around"/>
          <div class="tick"><xsl:call-template name="input"/>
            <label for="{@anchor}"><xsl:call-template name="label-text"/></label></div>
        </xsl:when>
        <xsl:otherwise>
          <label for="{@anchor}"><xsl:call-template name="label-text"/></label>
          <xsl:call-template name="around"/>
          <xsl:call-template name="input"/>
        </xsl:otherwise>
      </xsl:choose>
    </div>
  </xsl:template>

  <xsl:template name="label-text">
    <xsl:value-of select="@label"/>
    <xsl:if test="@required"><xsl:text> </xsl:text><span class="required">(required)</span></xsl:if>
  </xsl:template>

  <xsl:template name="around">
    <xsl:if test="help"><p class="help" id="{@anchor}-help"><xsl:value-of select="help"/></p></xsl:if>
    <xsl:if test="@hint"><p class="hint" id="{@anchor}-hint"><xsl:value-of select="@hint"/></p></xsl:if>
    <xsl:call-template name="errors"/>
  </xsl:template>

  <xsl:template name="errors">
    <xsl:if test="error">
      <p class="error" id="{@anchor}-error">
        <xsl:for-each select="error">
          <span><span class="hidden">Error: </span><xsl:value-of select="."/>
            <xsl:if test="../@kind = 'output'"> It is computed from other answers.</xsl:if></span>
        </xsl:for-each>
      </p>
    </xsl:if>
    <xsl:if test="stored">
      <p class="stored" id="{@anchor}-stored">Saved elsewhere:
        <xsl:choose>
          <xsl:when test="@kind = 'check' and string(stored)">ticked</xsl:when>
          <xsl:when test="@kind = 'check'">not ticked</xsl:when>
          <xsl:when test="string(stored)"><q><xsl:value-of select="stored"/></q></xsl:when>
          <xsl:otherwise>no answer</xsl:otherwise>
        </xsl:choose>
      </p>
    </xsl:if>
  </xsl:template>

  <xsl:template name="described">
    <xsl:if test="@described">
      <xsl:attribute name="aria-describedby"><xsl:value-of select="@described"/></xsl:attribute>
      <xsl:if test="error"><xsl:attribute name="aria-invalid">true</xsl:attribute></xsl:if>
    </xsl:if>
    <xsl:if test="@must"><xsl:attribute name="aria-required">true</xsl:attribute></xsl:if>
  </xsl:template>

  <xsl:template name="input">
    <xsl:choose>
      <xsl:when test="@plain">
        <!-- Never of a type that would change or hide an answer which does not fit. -->
        <input type="text" id="{@anchor}" name="{@name}" value="{@value}" class="width-{@width}">
          <xsl:if test="@inputmode"><xsl:attribute name="inputmode"><xsl:value-of select="@inputmode"/></xsl:attribute></xsl:if>
          <xsl:call-template name="described"/>
        </input>
      </xsl:when>
      <xsl:when test="@kind = 'output'">
        <output id="{@anchor}">
          <xsl:if test="error">
            <xsl:attribute name="tabindex">-1</xsl:attribute>
            <xsl:attribute name="aria-describedby"><xsl:value-of select="concat(@anchor, '-error')"/></xsl:attribute>
          </xsl:if>
          <xsl:value-of select="@value"/>
        </output>
      </xsl:when>
      <xsl:when test="@kind = 'textarea'">
        <textarea id="{@anchor}" name="{@name}" rows="4">
          <xsl:call-template name="described"/>
          <!-- A browser drops the first line end. -->
          <xsl:text>&#10;</xsl:text><xsl:value-of select="@value"/>
        </textarea>
      </xsl:when>
      <xsl:when test="@kind = 'select'">
        <select id="{@anchor}" name="{@name}">
          <xsl:call-template name="described"/>
          <option value=""></option>
          <xsl:for-each select="choice">
            <option value="{@value}">
              <xsl:if test="@chosen"><xsl:attribute name="selected">selected</xsl:attribute></xsl:if>
              <xsl:value-of select="."/>
            </option>
          </xsl:for-each>
        </select>
      </xsl:when>
      <xsl:when test="@kind = 'radio'">
        <xsl:for-each select="choice">
          <div class="tick">
            <input type="radio" id="{../@anchor}-{position()}" name="{../@name}" value="{@value}">
              <xsl:if test="@chosen"><xsl:attribute name="checked">checked</xsl:attribute></xsl:if>
            </input>
            <label for="{../@anchor}-{position()}"><xsl:value-of select="."/></label>
          </div>
        </xsl:for-each>
      </xsl:when>
      <xsl:when test="@kind = 'check'">
        <input type="checkbox" id="{@anchor}" name="{@name}" value="on">
          <xsl:call-template name="described"/>
          <xsl:if test="@checked"><xsl:attribute name="checked">checked</xsl:attribute></xsl:if>
        </input>
      </xsl:when>
    </xsl:choose>
  </xsl:template>

  <!-- A table: rows become cards in a narrow window -->

  <xsl:template match="table">
    <xsl:variable name="table" select="."/>
    <div class="table" id="{@anchor}" tabindex="-1" data-table="{@id}">
      <input type="hidden" name="{@count-name}" value="{@count}" class="row-count"/>
      <xsl:call-template name="errors"/>
      <xsl:if test="help"><p class="help"><xsl:value-of select="help"/></p></xsl:if>
      <table>
        <xsl:if test="count(column) &gt; 5"><xsl:attribute name="class">cards</xsl:attribute></xsl:if>
        <xsl:if test="error">
          <xsl:attribute name="aria-describedby"><xsl:value-of select="concat(@anchor, '-error')"/></xsl:attribute>
        </xsl:if>
        <caption><xsl:value-of select="@label"/></caption>
        <thead>
          <tr>
            <th scope="col"><span class="hidden">Row</span></th>
            <xsl:for-each select="column">
              <th scope="col"><xsl:value-of select="@label"/>
                <xsl:if test="@required"><xsl:text> </xsl:text><span class="required">(required)</span></xsl:if>
                <xsl:if test="@hint"><span class="hint"><xsl:value-of select="@hint"/></span></xsl:if>
                <xsl:if test="help"><span class="help"><xsl:value-of select="help"/></span></xsl:if>
              </th>
            </xsl:for-each>
            <xsl:if test="@dynamic"><th><span class="hidden">Remove</span></th></xsl:if>
          </tr>
        </thead>
        <tbody>
          <xsl:for-each select="row">
            <tr id="{$table/@anchor}-{@number}" tabindex="-1" data-row="{@number}">
              <xsl:if test="error">
                <xsl:attribute name="aria-describedby"><xsl:value-of select="concat($table/@anchor, '-', @number, '-error')"/></xsl:attribute>
              </xsl:if>
              <th scope="row">
                <xsl:choose>
                  <xsl:when test="@label"><xsl:value-of select="@label"/></xsl:when>
                  <xsl:otherwise><span class="row-word">Row </span><xsl:value-of select="@number"/></xsl:otherwise>
                </xsl:choose>
                <xsl:if test="error">
                  <p class="error" id="{$table/@anchor}-{@number}-error">
                    <xsl:for-each select="error"><span><span class="hidden">Error: </span><xsl:value-of select="."/></span></xsl:for-each>
                  </p>
                </xsl:if>
              </th>
              <xsl:for-each select="cell">
                <td class="kind-{@kind}{@marks}">
                  <label class="cell-label" for="{@anchor}"><xsl:value-of select="@label"/>
                    <span class="hidden"><xsl:text>, </xsl:text><xsl:value-of select="@of"/></span></label>
                  <xsl:if test="@described">
                    <xsl:if test="@hint"><p class="cell-hint hint" id="{@anchor}-hint"><xsl:value-of select="@hint"/></p></xsl:if>
                    <xsl:call-template name="errors"/>
                  </xsl:if>
                  <xsl:call-template name="input"/>
                </td>
              </xsl:for-each>
              <xsl:if test="$table/@dynamic">
                <td class="remove">
                  <button class="plain" name="_action" value="remove-row:{$table/@id}:{@number}">Remove<span class="hidden"> row <xsl:value-of select="@number"/> of <xsl:value-of select="$table/@label"/></span></button>
                </td>
              </xsl:if>
            </tr>
          </xsl:for-each>
        </tbody>
      </table>
      <xsl:if test="@dynamic">
        <p><button class="plain add" name="_action" value="add-row:{@id}"><xsl:value-of select="@add"/></button></p>
      </xsl:if>
    </div>
  </xsl:template>

  <!-- The receipt -->

  <xsl:template match="/receipt" mode="title">Receipt: <xsl:value-of select="@title"/></xsl:template>

  <xsl:template match="/receipt" mode="content">
    <h1>Receipt</h1>
    <div class="notice notice-good" role="status"><p>The form was checked and accepted.</p></div>
    <dl class="receipt">
      <dt>Form</dt><dd><xsl:value-of select="@title"/></dd>
      <dt>Accepted</dt><dd><xsl:value-of select="@accepted"/></dd>
      <dt>Number of the receipt</dt><dd><code><xsl:value-of select="@id"/></code></dd>
      <dt>What was sent</dt><dd>One message of <xsl:value-of select="@size"/> bytes</dd>
      <dt>Where it was sent</dt>
      <dd>
        <xsl:choose>
          <xsl:when test="@delivered">To <xsl:value-of select="@target"/>, delivered <xsl:value-of select="@delivered"/></xsl:when>
          <xsl:when test="@target">To <xsl:value-of select="@target"/>; it is on its way</xsl:when>
          <xsl:otherwise>It is kept here for download</xsl:otherwise>
        </xsl:choose>
      </dd>
    </dl>
    <xsl:if test="note"><p><xsl:value-of select="note"/></p></xsl:if>
    <p class="buttons no-print">
      <a class="button" href="/messages/{@id}.xml">Download the message</a>
      <a class="button secondary" href="/parked/{@id}">Show the form</a>
      <a class="button secondary" href="/forms/{@form}">Fill in another form</a>
    </p>
  </xsl:template>

  <!-- A request that has no page -->

  <xsl:template match="/trouble" mode="title"><xsl:value-of select="@title"/></xsl:template>

  <xsl:template match="/trouble" mode="content">
    <h1><xsl:value-of select="@title"/></h1>
    <p><xsl:value-of select="@text"/></p>
    <p><a href="/">Show the list of forms</a></p>
  </xsl:template>
</xsl:stylesheet>
