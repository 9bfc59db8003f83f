#include "BaseSchema.h"

namespace {

// The tables that come with an installation, at their level before the
// start-up upgrades: F985 and F987 with their detail and report tables,
// Configuracion_Regional and F978_DETALLE_REPORTE are made by the upgrades,
// and so are the columns Principal, Suscriptor, Caracter, Orden, Act4, Act5
// and Guidv. Numeric keys are INTEGER; everything else is text, as the system
// stores it (amounts included).
const char* const kBaseTables[] = {
    // Registry.
    "CREATE TABLE Contribuyentes (idContribuyente INTEGER NOT NULL PRIMARY KEY, "
    "ApellidoNombre TEXT(100), Cuit TEXT(50), idTContribuyente INTEGER)",

    "CREATE TABLE tPadronesComerciales (idContribuyente INTEGER, cuit TEXT(50), "
    "padron TEXT(50), objeto TEXT(50), grupo TEXT(50), categoria TEXT(50), "
    "razon_social TEXT(100), nombre_fantasia TEXT(100), percepcion TEXT(50), "
    "retencion TEXT(50), regimen TEXT(50), calle_numero TEXT(100), "
    "localidad_departamento TEXT(100), cp TEXT(50))",

    // Eleven fields: the upgrade recognises this level by that count.
    "CREATE TABLE Actividades_x_padrones (cuit TEXT(50), padron TEXT(50), objeto TEXT(50), "
    "ActP TEXT(50), ActP_Desc TEXT(250), Act1 TEXT(50), Act1_Desc TEXT(250), "
    "Act2 TEXT(50), Act2_Desc TEXT(250), Act3 TEXT(50), Act3_Desc TEXT(250))",

    // Catalogues.
    "CREATE TABLE tActividades (idTActividad INTEGER NOT NULL PRIMARY KEY, "
    "Nombre TEXT(250), Alicuota TEXT(50))",

    // valor and descripcion are what the annexes show ("FACA - Factura A") and
    // look up by the four-character code; Nombre holds that same shown text.
    "CREATE TABLE tComprobantes (valor TEXT(50), descripcion TEXT(100), "
    "idTComprobante INTEGER NOT NULL PRIMARY KEY, Nombre TEXT(150))",

    "CREATE TABLE tMunicipalidades (idTMunicipalidad INTEGER NOT NULL PRIMARY KEY, "
    "Nombre TEXT(100))",

    "CREATE TABLE tMenores (Codigo TEXT(50))",

    // Configuration.
    "CREATE TABLE Opciones (Nombre TEXT(50), Valor TEXT(50))",

    "CREATE TABLE Formularios (idFormulario TEXT(50), Nombre TEXT(250), "
    "LeyendaNuevo TEXT(250), LeyendaGenerado TEXT(250))",

    "CREATE TABLE tCodigos_Formularios (Id INTEGER NOT NULL PRIMARY KEY, "
    "idFormulario TEXT(50), tipo_imponible TEXT(50), impuesto_concepto TEXT(50), "
    "codigo_formulario TEXT(50))",

    // The index of declarations that the tree lists.
    "CREATE TABLE TPadrones_Formularios (Id Counter NOT NULL PRIMARY KEY, Padron TEXT(50), "
    "Objeto TEXT(50), Periodo TEXT(50), idFormulario TEXT(50), Rectificativa TEXT(50), "
    "FechaRectificativa TEXT(50), ctrl TEXT(50))",

    // Declarations.
    "CREATE TABLE F976 (Id Counter NOT NULL PRIMARY KEY, Codigo TEXT(50), Padron TEXT(50), "
    "Objeto TEXT(50), Periodo TEXT(50), Rectificativa TEXT(50), FechaRectificativa TEXT(50), "
    "BaseImponible TEXT(50), Impuesto TEXT(50), Accesorios TEXT(50), Multas TEXT(50), "
    "PagoACuenta TEXT(50), Percepciones TEXT(50), Retenciones TEXT(50), SaldoAFavor TEXT(50), "
    "SaldoAFavorF TEXT(50), SubtotalDeterminado TEXT(50), TotalAPagar TEXT(50), "
    "Tasa TEXT(50), ctrl TEXT(50))",

    "CREATE TABLE F2001 (Id Counter NOT NULL PRIMARY KEY, Codigo TEXT(50), Padron TEXT(50), "
    "Objeto TEXT(50), Periodo TEXT(50), Rectificativa TEXT(50), FechaRectificativa TEXT(50), "
    "BaseImponible TEXT(50), Impuesto TEXT(50), Total TEXT(50), SaldoAFavor TEXT(50), "
    "Retenciones TEXT(50), Percepciones TEXT(50), Desgrabaciones TEXT(50), "
    "SubtotalCol12 TEXT(50), SubtotalColumna2 TEXT(50), DiferenciaCol12 TEXT(50), "
    "DiferenciaColumna2 TEXT(50), PagoACuenta TEXT(50), TotalAPagar TEXT(50), ctrl TEXT(50))",

    "CREATE TABLE F977 (Id Counter NOT NULL PRIMARY KEY, Codigo TEXT(50), Padron TEXT(50), "
    "Objeto TEXT(50), Domicilio TEXT(100), RazonSocial TEXT(100), Periodo TEXT(50), "
    "Rectificativa TEXT(50), FechaRectificativa TEXT(50), Transporte TEXT(100), "
    "TotalPercepciones TEXT(50), ctrl TEXT(50))",

    "CREATE TABLE F978 (Id Counter NOT NULL PRIMARY KEY, Codigo TEXT(50), Padron TEXT(50), "
    "Objeto TEXT(50), Domicilio TEXT(100), RazonSocial TEXT(100), Periodo TEXT(50), "
    "Rectificativa TEXT(50), FechaRectificativa TEXT(50), Transporte TEXT(100), "
    "TotalPercepciones TEXT(50), ctrl TEXT(50))",

    "CREATE TABLE F986 (Id Counter NOT NULL PRIMARY KEY, Padron TEXT(50), Objeto TEXT(50), "
    "Periodo TEXT(50), Rectificativa TEXT(50), FechaRectificativa TEXT(50), "
    "RazonSocial TEXT(100), Contribuyente TEXT(100), Domicilio TEXT(100), "
    "ImpPercibidoF985 TEXT(50), AccesoriosCoef TEXT(50), Multas TEXT(50), Otros TEXT(50), "
    "ImporteDepositar TEXT(50), ctrl TEXT(50))",

    "CREATE TABLE F988 (Id Counter NOT NULL PRIMARY KEY, Padron TEXT(50), Objeto TEXT(50), "
    "Periodo TEXT(50), Rectificativa TEXT(50), FechaRectificativa TEXT(50), "
    "RazonSocial TEXT(100), Contribuyente TEXT(100), Domicilio TEXT(100), "
    "ImpPercibidoF987 TEXT(50), AccesoriosCoef TEXT(50), Multas TEXT(50), Otros TEXT(50), "
    "ImporteDepositar TEXT(50), ctrl TEXT(50))",

    // Detail lines.
    "CREATE TABLE F976_Detalle (Id Counter NOT NULL PRIMARY KEY, Codigo TEXT(50), "
    "FechaRectificativa TEXT(50), CodigoDetalle TEXT(50), TipoActividad TEXT(250), "
    "CodigoActividad TEXT(50), BaseImponible TEXT(50), Alicuota TEXT(50), Impuesto TEXT(50), "
    "ctrl TEXT(50))",

    "CREATE TABLE F2001_Detalle (Id Counter NOT NULL PRIMARY KEY, Codigo TEXT(50), "
    "FechaRectificativa TEXT(50), CodigoDetalle TEXT(50), TipoActividad TEXT(250), "
    "CodigoActividad TEXT(50), BaseImponible TEXT(50), Alicuota TEXT(50), Impuesto TEXT(50), "
    "ctrl TEXT(50))",

    "CREATE TABLE F977_Detalle (Id Counter NOT NULL PRIMARY KEY, Codigo TEXT(50), "
    "FechaRectificativa TEXT(50), CodigoDetalle TEXT(50), Fecha TEXT(50), "
    "TipoComprobante TEXT(50), NroComprobante TEXT(50), Denominacion TEXT(50), Cuit TEXT(50), "
    "Padron TEXT(50), ImportePercibido TEXT(50), ctrl TEXT(50))",

    "CREATE TABLE F978_Detalle (Id Counter NOT NULL PRIMARY KEY, Codigo TEXT(50), "
    "FechaRectificativa TEXT(50), CodigoDetalle TEXT(50), Fecha TEXT(50), "
    "TipoComprobante TEXT(50), NroComprobante TEXT(50), Denominacion TEXT(50), Cuit TEXT(50), "
    "Padron TEXT(50), ImportePercibido TEXT(50), ctrl TEXT(50))",

    // Print staging, without a key.
    "CREATE TABLE F977_DETALLE_REPORTE (PADRON TEXT(50), DOMICILIO TEXT(255), "
    "PERIODO TEXT(50), RECTIFICATIVA TEXT(50), TOTALPERCEPCIONES TEXT(50), "
    "FECHARECTIFICATIVA TEXT(50), CODIGO TEXT(50), FECHA TEXT(50), TIPOCOMPROBANTE TEXT(50), "
    "NROCOMPROBANTE TEXT(50), DENOMINACION TEXT(100), CUIT TEXT(50), "
    "IMPORTEPERCIBIDO TEXT(50), RAZON_SOCIAL TEXT(255), CP TEXT(50))",

    // The former filing scheme, which no screen reaches any more.
    "CREATE TABLE EncFormularios (idEncFormulario Counter NOT NULL PRIMARY KEY, "
    "idContribuyente INTEGER, IdFormulario TEXT(50), Anio TEXT(50), Periodo TEXT(50), "
    "TipoContribuyente TEXT(50), Original TEXT(50), FechaRectificativa TEXT(50), "
    "FechaRectificativaNueva TEXT(50), Copia TEXT(50), Hash TEXT(50), Guidv TEXT(50), "
    "Base_Imponible TEXT(50), Alicuota TEXT(50), Monto TEXT(50), "
    "Accesorios_Coeficiente TEXT(50), Articulo_44 TEXT(50), Dete_DesgravacionesIB TEXT(50), "
    "Dete_PagoCuentaAP TEXT(50), Dete_PagoCuentaAR TEXT(50), Dete_PagoCuentaIB TEXT(50), "
    "Dete_PercepcionesIB TEXT(50), Dete_RetencionesIB TEXT(50), Dete_SaldoAP TEXT(50), "
    "Dete_SaldoAR TEXT(50), Dete_SaldoIB TEXT(50), Importe_Percibido TEXT(50), "
    "Menos_Retenciones TEXT(50), Otros TEXT(50), Otros_Saldos TEXT(50), "
    "Perc_Alicuota1 TEXT(50), Perc_Alicuota2 TEXT(50), Perc_Alicuota3 TEXT(50), "
    "Perc_Alicuota4 TEXT(50), Perc_Monto1 TEXT(50), Perc_Monto2 TEXT(50), "
    "Perc_Monto3 TEXT(50), Perc_Monto4 TEXT(50), Perc_Excentas TEXT(50), "
    "Personal_Ocupado TEXT(50), Rete_Importe TEXT(50), Rete_Monto TEXT(50), "
    "Saldo_Favor_Ddjj_Anio TEXT(50), Saldo_Favor_Ddjj_Periodo TEXT(50), "
    "idTActividad INTEGER, idTMunicipalidad INTEGER)",

    "CREATE TABLE DetFormularios (idDetFormulario Counter NOT NULL PRIMARY KEY, "
    "idEncFormulario INTEGER, Renglon TEXT(50), Dia TEXT(50), Fecha TEXT(50), Grupo TEXT(50), "
    "ApellidoNombre TEXT(100), Cuit TEXT(50), Domicilio TEXT(100), idComprobante INTEGER, "
    "NumeroComprobante TEXT(50), BaseImponible TEXT(50), Alicuota TEXT(50), "
    "Impuesto TEXT(50), Importe TEXT(50), Monto TEXT(50), idTActividad INTEGER, "
    "idTMunicipalidad INTEGER)",

    "CREATE TABLE FormasPago (idEncFormulario INTEGER, idTPago INTEGER, idTBanco INTEGER, "
    "Importe TEXT(50), Numero TEXT(50), Numero_Giro TEXT(50), Rubro TEXT(50))",

    "CREATE TABLE tPagos (idTPago INTEGER NOT NULL PRIMARY KEY, Nombre TEXT(100))",

    "CREATE TABLE tBancos (idTBanco INTEGER NOT NULL PRIMARY KEY, Nombre TEXT(100))",

    "CREATE TABLE Contribuyentes_TActividades (idContribuyente INTEGER, idTActividad INTEGER)",
};

} // namespace

const QStringList& BaseSchemaStatements()
{
    static const QStringList statements = [] {
        QStringList out;
        for (const char* sql : kBaseTables)
            out << QString::fromUtf8(sql);
        return out;
    }();
    return statements;
}
