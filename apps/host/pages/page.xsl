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

  <!-- A part of a form by itself, such as a question. What differs from form to form may be a place in
       which it is put later, and the parts of a form an element `parts` that does so. So the templates
       below take texts as they are and never ask what they say. -->
  <xsl:template match="/part"><xsl:apply-templates/></xsl:template>

  <!-- The texts are put into other languages by texts.<language>.json, in which they stand as keys. -->

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
    <xsl:if test="problems and not(@conflict)">Errors: </xsl:if>
    <xsl:value-of select="@title"/>
  </xsl:template>

  <xsl:template match="/form" mode="content">
    <h1><xsl:value-of select="@title"/></h1>
    <xsl:call-template name="notice"/>
    <xsl:if test="problems"><xsl:call-template name="summary"/></xsl:if>
    <xsl:if test="intro"><p class="intro"><xsl:value-of select="intro"/></p></xsl:if>
    <xsl:if test="count(section) &gt; 2">
      <nav class="contents" aria-label="Sections">
        <ol>
          <xsl:for-each select="section">
            <li><a href="#{@id}"><xsl:value-of select="@title"/></a>
              <xsl:for-each select="wrong">
                <xsl:text> </xsl:text><span class="count"><xsl:value-of select="@count"/>
                  <xsl:choose><xsl:when test="@one"> error</xsl:when>
                    <xsl:otherwise> errors</xsl:otherwise></xsl:choose></span>
              </xsl:for-each>
            </li>
          </xsl:for-each>
        </ol>
      </nav>
    </xsl:if>
    <form method="post" action="{@action}" accept-charset="UTF-8" id="form" novalidate="novalidate"
          data-state="{@state}" data-unsaved="{@unsaved}" data-notice="{@notice}" autocomplete="off"
          data-text-saved="Saved, not sent yet" data-text-unsaved="Could not be saved by itself: please save"
          data-text-unanswered="The server does not respond: please save again"
          data-text-send="Save and go on to sending">
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
        <xsl:when test="@notice = 'conflict'">This form was saved elsewhere after you opened this page. Nothing was overwritten. Below stand your answers; where the saved form differs its answer is shown beside yours. Saving now keeps what stands in the inputs, and nothing else of the saved form.</xsl:when>
        <xsl:when test="@notice = 'accepted'">This form was sent and accepted before. Changes made since then were not saved. Below they still stand; what was sent is shown beside them.</xsl:when>
        <xsl:when test="@notice = 'not-checked'">The form was saved, but it could not be checked, so it was not sent. The fault is ours and has been recorded. Try to send it again later.</xsl:when>
        <xsl:when test="@notice = 'failed'">The form could not be processed. The fault is ours and has been recorded. Your answers still stand below; they were not saved.</xsl:when>
        <xsl:when test="@notice = 'store'">The store cannot be reached. Your answers still stand below and were not saved just now: please press the button again in a moment.</xsl:when>
        <xsl:when test="@notice = 'token'">This page was open for too long, or did not come from here. Your answers still stand below and were not saved yet: please press the button again.</xsl:when>
        <xsl:when test="@notice = 'rows'">The form has as many rows as can be taken, or more. Your answers still stand below and were not saved: take rows away, then save them.</xsl:when>
        <xsl:when test="@notice = 'characters'">Some characters did not arrive as they were typed; where they were there is a &#xFFFD;. Such a form can be saved, and sent as soon as these answers are typed again.</xsl:when>
      </xsl:choose>
    </xsl:variable>
    <xsl:if test="string($text)">
      <div class="notice notice-{@notice}" role="alert"><p><xsl:copy-of select="$text"/></p></div>
    </xsl:if>
  </xsl:template>

  <xsl:template name="summary">
    <div class="summary" role="alert" tabindex="-1" id="summary" autofocus="autofocus" aria-labelledby="summary-title">
      <h2 id="summary-title">
        <xsl:variable name="count" select="problems/@count"/>
        <xsl:choose>
          <xsl:when test="@conflict"><xsl:value-of select="$count"/>
            <xsl:choose><xsl:when test="problems/@one"> answer differs</xsl:when><xsl:otherwise> answers differ</xsl:otherwise></xsl:choose></xsl:when>
          <xsl:when test="problems/@one">There is 1 error</xsl:when>
          <xsl:otherwise>There are <xsl:value-of select="$count"/> errors</xsl:otherwise>
        </xsl:choose>
      </h2>
      <xsl:if test="not(@conflict)">
        <p>The form was saved and not sent. Mend what is wrong and send it again.</p>
      </xsl:if>
      <ul>
        <xsl:apply-templates select="problems/*"/>
      </ul>
    </div>
  </xsl:template>

  <xsl:template match="problem"><li><xsl:copy-of select="@lang"/><xsl:apply-templates/></li></xsl:template>

  <xsl:template match="problem[@unmendable]">
    <li>The message made of this form is not valid, and no answer is to blame. Those who run this form have been told.</li>
  </xsl:template>

  <xsl:template match="place"><a href="#{@anchor}"><xsl:apply-templates/></a></xsl:template>
  <xsl:template match="part">, <xsl:apply-templates/></xsl:template>
  <xsl:template match="part[@number]"><xsl:text>, </xsl:text>row <xsl:apply-templates/></xsl:template>
  <xsl:template match="message">: <xsl:apply-templates/></xsl:template>
  <xsl:template match="message[@lang]">: <span lang="{@lang}"><xsl:apply-templates/></span></xsl:template>

  <xsl:template match="wrong"/>

  <xsl:template match="section">
    <section id="{@id}" aria-labelledby="{@id}-title">
      <h2 id="{@id}-title"><xsl:value-of select="@title"/></h2>
      <xsl:apply-templates/>
    </section>
  </xsl:template>

  <!-- A question. Its element has all that the page has of it, from top to bottom: the label, what tells
       of the input, the input. A page has hundreds of these elements, so they are told apart by name. -->

  <xsl:template match="field"><div class="field {@class}"><xsl:apply-templates/></div></xsl:template>

  <xsl:template match="group">
    <fieldset><xsl:copy-of select="@*"/><xsl:apply-templates/></fieldset>
  </xsl:template>

  <xsl:template match="tick"><div class="tick"><xsl:apply-templates/></div></xsl:template>

  <xsl:template match="label"><label for="{@for}"><xsl:apply-templates/></label></xsl:template>
  <xsl:template match="legend"><legend><xsl:apply-templates/></legend></xsl:template>
  <xsl:template match="required"><xsl:text> </xsl:text><span class="required">(required)</span></xsl:template>

  <xsl:template match="help"><p class="help"><xsl:copy-of select="@id"/><xsl:apply-templates/></p></xsl:template>
  <xsl:template match="hint"><p class="hint" id="{@id}"><xsl:copy-of select="@lang"/><xsl:apply-templates/></p></xsl:template>

  <xsl:template match="errors"><p class="error" id="{@id}"><xsl:apply-templates/></p></xsl:template>
  <xsl:template match="error"><span><xsl:copy-of select="@lang"/><span class="hidden">Error: </span><xsl:apply-templates/></span></xsl:template>
  <xsl:template match="computed"> It is computed from other answers.</xsl:template>

  <xsl:template match="stored">
      <p class="stored" id="{@id}">
        <xsl:copy-of select="@lang"/>
        <xsl:choose>
          <xsl:when test="@sent">Sent: </xsl:when>
          <xsl:otherwise>Saved elsewhere: </xsl:otherwise>
        </xsl:choose>
        <xsl:choose>
          <xsl:when test="@as = 'count'"><xsl:value-of select="."/></xsl:when>
          <xsl:when test="@as = 'ticked'">ticked</xsl:when>
          <xsl:when test="@as = 'not-ticked'">not ticked</xsl:when>
          <xsl:when test="@as = 'none'">no answer</xsl:when>
          <xsl:otherwise><q><xsl:value-of select="."/></q></xsl:otherwise>
        </xsl:choose>
      </p>
  </xsl:template>

  <xsl:template match="input | select | output"><xsl:copy-of select="."/></xsl:template>

  <xsl:template match="textarea">
    <textarea>
      <xsl:copy-of select="@*"/>
      <!-- A browser drops the first line end. -->
      <xsl:text>&#10;</xsl:text><xsl:apply-templates/>
    </textarea>
  </xsl:template>

  <!-- A table: rows become cards in a narrow window -->

  <xsl:template match="table">
    <div class="table" id="{@anchor}" tabindex="-1">
      <input type="hidden" name="{@count-name}" value="{@count}" class="row-count"/>
      <xsl:apply-templates select="errors | stored | help"/>
      <table>
        <xsl:if test="@wide"><xsl:attribute name="class">cards</xsl:attribute></xsl:if>
        <xsl:call-template name="described-by-errors"/>
        <caption><xsl:value-of select="@label"/></caption>
        <thead>
          <tr>
            <th scope="col"><span class="hidden">Row</span></th>
            <xsl:apply-templates select="column"/>
            <xsl:if test="@dynamic"><th><span class="hidden">Remove</span></th></xsl:if>
          </tr>
        </thead>
        <tbody><xsl:apply-templates select="row"/></tbody>
      </table>
      <xsl:if test="@dynamic">
        <p><button class="plain add" name="_action" value="add-row:{@id}">
          <xsl:choose><xsl:when test="@add"><xsl:value-of select="@add"/></xsl:when>
            <xsl:otherwise>Add a row</xsl:otherwise></xsl:choose></button></p>
      </xsl:if>
    </div>
  </xsl:template>

  <xsl:template name="described-by-errors">
    <xsl:if test="errors">
      <xsl:attribute name="aria-describedby"><xsl:value-of select="errors/@id"/></xsl:attribute>
    </xsl:if>
  </xsl:template>

  <xsl:template match="column"><th scope="col"><xsl:apply-templates/></th></xsl:template>
  <xsl:template match="column/hint"><span class="hint"><xsl:copy-of select="@lang"/><xsl:apply-templates/></span></xsl:template>
  <xsl:template match="column/help"><span class="help"><xsl:apply-templates/></span></xsl:template>

  <!-- The script finds a row's number by its class, and writes another one when rows come and go. -->
  <xsl:template match="row">
    <tr id="{@anchor}" tabindex="-1" data-row="{@number}">
      <xsl:call-template name="described-by-errors"/>
      <th scope="row">
        <xsl:choose>
          <xsl:when test="@label"><xsl:value-of select="@label"/></xsl:when>
          <xsl:otherwise>Row <span class="row-number"><xsl:value-of select="@number"/></span></xsl:otherwise>
        </xsl:choose>
        <xsl:apply-templates select="errors"/>
      </th>
      <xsl:apply-templates select="cell | parts"/>
      <xsl:if test="../@dynamic">
        <td class="remove">
          <button class="plain" name="_action" value="remove-row:{../@id}:{@number}">Remove<span class="hidden"> row <span class="row-number"><xsl:value-of select="@number"/></span> of <xsl:value-of select="../@label"/></span></button>
        </td>
      </xsl:if>
    </tr>
  </xsl:template>

  <xsl:template match="cell"><td class="{@class}"><xsl:apply-templates/></td></xsl:template>
  <xsl:template match="cell/label"><label class="cell-label" for="{@for}"><xsl:apply-templates/></label></xsl:template>
  <xsl:template match="of"><span class="hidden">, <xsl:apply-templates/></span></xsl:template>
  <xsl:template match="of[@number]"><span class="hidden"><xsl:text>, </xsl:text>row <span class="row-number"><xsl:apply-templates/></span></span></xsl:template>
  <xsl:template match="cell/hint"><p class="cell-hint hint" id="{@id}"><xsl:copy-of select="@lang"/><xsl:apply-templates/></p></xsl:template>

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
    <xsl:for-each select="again">
      <p>Your answers are kept in this page and nowhere else: leave it open until they are sent.</p>
      <form method="post" action="{@action}" accept-charset="UTF-8">
        <xsl:for-each select="posted"><input type="hidden" name="{@name}" value="{@value}"/></xsl:for-each>
        <p class="buttons"><button class="button">Try again</button></p>
      </form>
    </xsl:for-each>
    <p><a href="/">Show the list of forms</a></p>
  </xsl:template>
</xsl:stylesheet>
